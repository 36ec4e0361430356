# Release archives through CPack (`cmake --build <dir> --target package`, or
# the `package` workflow preset):
#   - a .tar.gz of the whole install tree, relocatable, to unpack anywhere;
#   - Debian packages split as Debian splits libraries:
#       libkesraengine1     the shared object (Runtime)
#       libkesraengine-dev  headers, CMake and pkg-config files, the linker
#                           link and the reference backends' archives
#       python3-kesraengine the Python module, for Debian's python3
#     and one package for each component with needs of its own (OpenGL,
#     the reader, the Qt widget).
#     A static build has no runtime package: everything is development files.
include_guard(GLOBAL)

set(CPACK_PACKAGE_NAME kesraengine)
set(CPACK_PACKAGE_VENDOR "KesraEngine developers")
set(CPACK_PACKAGE_CONTACT "KesraEngine developers <kesraengine@users.noreply.github.com>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_INSTALL_DIRECTORY KesraEngine)
set(CPACK_GENERATOR TGZ DEB)
set(CPACK_SOURCE_GENERATOR "")
set(CPACK_STRIP_FILES ON)
# The build tree, tests and test doubles never reach a package: only what the
# install rules name does.
set(CPACK_VERBATIM_VARIABLES ON)

# The archive holds everything in one tree; the Debian packages one group each.
set(CPACK_ARCHIVE_COMPONENT_INSTALL OFF)
set(CPACK_DEB_COMPONENT_INSTALL ON)

get_property(kesra_backends GLOBAL PROPERTY KESRA_INSTALLED_BACKENDS)
if(BUILD_SHARED_LIBS)
  set(CPACK_COMPONENTS_ALL Runtime Development ${kesra_backends})
else()
  set(CPACK_COMPONENTS_ALL Development ${kesra_backends})
endif()

set(CPACK_COMPONENT_RUNTIME_GROUP runtime)
set(CPACK_COMPONENT_DEVELOPMENT_GROUP development)
foreach(backend IN LISTS kesra_backends)
  string(TOUPPER ${backend} upper)
  get_property(deb_package GLOBAL PROPERTY KESRA_${backend}_DEB_PACKAGE)
  get_property(required GLOBAL PROPERTY KESRA_${backend}_REQUIRES)
  set(CPACK_COMPONENT_${upper}_DEPENDS Development ${required})
  if(deb_package)
    # A package of its own, depending on the development package and on
    # what its host needs to link it.
    set(CPACK_COMPONENT_${upper}_GROUP ${backend})
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${deb_package})
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION libdevel)
    get_property(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS GLOBAL PROPERTY KESRA_${backend}_DEB_DEPENDS)
    set(CPACK_COMPONENT_GROUP_${upper}_DESCRIPTION
      "${PROJECT_DESCRIPTION} (${backend} component)")
  else()
    set(CPACK_COMPONENT_${upper}_GROUP development)
  endif()
endforeach()
if(BUILD_SHARED_LIBS)
  set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS Runtime)
endif()

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libkesraengine${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
# dpkg-shlibdeps reads the shared object's own needs (libc6, libstdc++6, ...).
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libkesraengine-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
# The module holds the reader, the OpenGL backend and the viewer's scene, and
# needs at run time what they load: EGL and Mesa's driver for the headless
# context, FreeType and the DejaVu fonts for text, libpng for PNG files.
if(TARGET kesraengine_native)
  list(APPEND CPACK_COMPONENTS_ALL Python)
  set(CPACK_COMPONENT_PYTHON_GROUP python)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-kesraengine)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
  # The module is built for one series of the interpreter (its file name
  # says cpython-3XY).
  list(GET KESRA_PYTHON_VERSION 0 python_major)
  list(GET KESRA_PYTHON_VERSION 1 python_minor)
  math(EXPR python_next "${python_minor} + 1")
  set(python_depends "python3 (>= ${python_major}.${python_minor}), python3 (<< ${python_major}.${python_next}), "
      "python3-numpy, libegl1, libopengl0, libgl1-mesa-dri, libfreetype6, fonts-dejavu-core, libpng16-16, "
      "libexpat1, zlib1g, libstdc++6, libgcc-s1, libc6")
  string(CONCAT CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS ${python_depends})
  if(BUILD_SHARED_LIBS)
    string(PREPEND CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "libkesraengine${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION}), ")
  endif()
  set(CPACK_COMPONENT_GROUP_PYTHON_DESCRIPTION "${PROJECT_DESCRIPTION} (Python module)")
endif()

set(CPACK_COMPONENT_GROUP_RUNTIME_DESCRIPTION
  "${PROJECT_DESCRIPTION} (shared library)")
set(CPACK_COMPONENT_GROUP_DEVELOPMENT_DESCRIPTION
  "${PROJECT_DESCRIPTION} (headers, CMake package, pkg-config file, reference backends)")

include(CPack)
