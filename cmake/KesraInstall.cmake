# Install rules of the library and of the reference backends, as one CMake
# package (KesraEngineConfig.cmake) whose backends are optional components,
# plus kesraengine.pc for pkg-config. Every installed file refers to the
# prefix relatively, so the tree can be moved or unpacked anywhere.
#
# Install components, which also become the binary packages:
#   Runtime      the shared object and its SONAME link
#   Development  headers, the linker link, static archives, CMake and
#                pkg-config files
#   <Backend>    one per reference backend: its archive, headers and
#                CMake component file
include_guard(GLOBAL)
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(KESRA_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/KesraEngine
    CACHE STRING "Where KesraEngineConfig.cmake is installed, relative to the prefix")
set(KESRA_INSTALL_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/KesraEngine)

# The library, its headers, its CMake package and its pkg-config file.
function(kesra_install_library)
  install(TARGETS KesraEngine
    EXPORT KesraEngineTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
      COMPONENT Runtime
      NAMELINK_COMPONENT Development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Development
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Runtime
    FILE_SET HEADERS DESTINATION ${KESRA_INSTALL_INCLUDEDIR} COMPONENT Development)
  install(EXPORT KesraEngineTargets
    NAMESPACE KesraEngine::
    DESTINATION ${KESRA_INSTALL_CMAKEDIR}
    COMPONENT Development)

  configure_package_config_file(
    ${PROJECT_SOURCE_DIR}/cmake/KesraEngineConfig.cmake.in
    ${PROJECT_BINARY_DIR}/KesraEngineConfig.cmake
    INSTALL_DESTINATION ${KESRA_INSTALL_CMAKEDIR}
    NO_SET_AND_CHECK_MACRO
    NO_CHECK_REQUIRED_COMPONENTS_MACRO)
  write_basic_package_version_file(
    ${PROJECT_BINARY_DIR}/KesraEngineConfigVersion.cmake
    VERSION ${PROJECT_VERSION}
    COMPATIBILITY SameMajorVersion)
  install(FILES
      ${PROJECT_BINARY_DIR}/KesraEngineConfig.cmake
      ${PROJECT_BINARY_DIR}/KesraEngineConfigVersion.cmake
    DESTINATION ${KESRA_INSTALL_CMAKEDIR}
    COMPONENT Development)

  # pkg-config finds the file in <libdir>/pkgconfig: the prefix is that far
  # up from it.
  if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    set(KESRA_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
  else()
    file(RELATIVE_PATH up "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
    string(REGEX REPLACE "/$" "" up "${up}")
    set(KESRA_PC_PREFIX "\${pcfiledir}/${up}")
  endif()
  # A host linked with the .pc file's flags finds the shared object where it
  # was installed, in any prefix, without LD_LIBRARY_PATH: the flags carry a
  # run path to libdir. RUNPATH (new dtags) rather than RPATH, so that an
  # LD_LIBRARY_PATH set at run time still wins over it.
  if(BUILD_SHARED_LIBS)
    set(KESRA_PC_LIBS_PRIVATE "")
    set(KESRA_PC_RUNPATH " -Wl,--enable-new-dtags,-rpath,\${libdir}")
  else()
    set(KESRA_PC_LIBS_PRIVATE "Libs.private: -lm")
    set(KESRA_PC_RUNPATH "")
  endif()
  set(KESRA_PC_CFLAGS "-I\${includedir} -ffp-contract=off")
  if(NOT BUILD_SHARED_LIBS)
    string(APPEND KESRA_PC_CFLAGS " -DKESRA_ENGINE_STATIC")
  endif()
  configure_file(${PROJECT_SOURCE_DIR}/cmake/kesraengine.pc.in
                 ${PROJECT_BINARY_DIR}/kesraengine.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/kesraengine.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT Development)
endfunction()

# A reference backend as the package component <component>: the target is
# KesraEngine::<export_name> for the host, its headers keep the paths under
# <header_base> (so "svg/SvgCamera.h" stays "svg/SvgCamera.h"), and each
# DEPENDENCIES entry becomes a find_dependency() call of the component, such
# as "OpenGL COMPONENTS OpenGL EGL", after the SETUP lines (settings those
# calls need, such as which OpenGL libraries to prefer). A backend that needs more than the
# library names its own Debian package (DEB_PACKAGE) and the Debian packages
# its host must have to build against it (DEB_DEPENDS); the others go into the
# development package. REQUIRES_COMPONENTS names the package components it
# builds on (the Qt widget on Gl): its packages depend on theirs.
function(kesra_install_backend target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "COMPONENT;EXPORT_NAME;DEB_PACKAGE"
                        "SETUP;DEPENDENCIES;DEB_DEPENDS;REQUIRES_COMPONENTS")
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${arg_EXPORT_NAME})
  install(TARGETS ${target}
    EXPORT KesraEngine${arg_COMPONENT}Targets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${arg_COMPONENT}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${arg_COMPONENT}
    FILE_SET HEADERS DESTINATION ${KESRA_INSTALL_INCLUDEDIR} COMPONENT ${arg_COMPONENT})
  install(EXPORT KesraEngine${arg_COMPONENT}Targets
    NAMESPACE KesraEngine::
    DESTINATION ${KESRA_INSTALL_CMAKEDIR}
    COMPONENT ${arg_COMPONENT})

  set(KESRA_COMPONENT ${arg_COMPONENT})
  set(KESRA_COMPONENT_DEPENDENCIES "")
  foreach(line IN LISTS arg_SETUP)
    string(APPEND KESRA_COMPONENT_DEPENDENCIES "${line}\n")
  endforeach()
  foreach(dependency IN LISTS arg_DEPENDENCIES)
    string(APPEND KESRA_COMPONENT_DEPENDENCIES "find_dependency(${dependency})\n")
  endforeach()
  configure_file(${PROJECT_SOURCE_DIR}/cmake/KesraEngineComponent.cmake.in
                 ${PROJECT_BINARY_DIR}/KesraEngine${arg_COMPONENT}Component.cmake @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/KesraEngine${arg_COMPONENT}Component.cmake
    DESTINATION ${KESRA_INSTALL_CMAKEDIR}
    COMPONENT ${arg_COMPONENT})
  set_property(GLOBAL APPEND PROPERTY KESRA_INSTALLED_BACKENDS ${arg_COMPONENT})
  set_property(GLOBAL PROPERTY KESRA_${arg_COMPONENT}_REQUIRES ${arg_REQUIRES_COMPONENTS})
  if(arg_DEB_PACKAGE)
    set_property(GLOBAL PROPERTY KESRA_${arg_COMPONENT}_DEB_PACKAGE ${arg_DEB_PACKAGE})
    list(JOIN arg_DEB_DEPENDS ", " deb_depends)
    set_property(GLOBAL PROPERTY KESRA_${arg_COMPONENT}_DEB_DEPENDS "${deb_depends}")
  endif()
endfunction()
