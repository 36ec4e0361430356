#!/usr/bin/env python3
"""Checks of KesraEngine's build and of the installed library as its users meet them.

Each subcommand is one ctest test:
  install      install the build into a prefix; no installed text file may
               name the source or build directory
  symbols      the shared object's dynamic symbols are the library's own
  cmake-host   configure, build and run a host through find_package
  pkgconfig-host  build a host with the README's c++ $(pkg-config ...) line
               and run it as built, without LD_LIBRARY_PATH
  deb          make the .deb packages and check their names, fields and files
  static       a BUILD_SHARED_LIBS=OFF build: install, both hosts, packages
  demo-workflow  the demo workflow's build step makes every example program,
               and every program the README names under build/ is one
  options      KESRA_BUILD_BACKENDS without the examples configures the
               reference backends alone; the examples without the backends
               are refused with a message that names both switches
"""
import argparse
import json
import os
import re
import shutil
import subprocess
import sys
import tarfile
import tempfile

TEXT_SUFFIXES = (".h", ".cmake", ".pc")
SYMBOL_PREFIXES = ("vtable for ", "typeinfo name for ", "typeinfo for ", "VTT for ",
                   "construction vtable for ", "non-virtual thunk to ", "virtual thunk to ",
                   "guard variable for ")
NAMESPACES = ("KesraEngine::", "KesraMathKit::")


class Failure(Exception):
    pass


def run(cmd, cwd=None, env=None, expect_ok=True):
    """Runs cmd, returns its combined output; fails unless it ends as expected."""
    shown = cmd if isinstance(cmd, str) else " ".join(cmd)
    proc = subprocess.run(cmd, cwd=cwd, env=env, shell=isinstance(cmd, str),
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    if (proc.returncode == 0) != expect_ok:
        raise Failure(f"'{shown}' exited with {proc.returncode}, expected "
                      f"{'success' if expect_ok else 'failure'}:\n{proc.stdout}")
    return proc.stdout


def clean_env():
    """The environment without variables that would steer a host's build to
    another installation or flavour."""
    env = dict(os.environ)
    for name in ("CMAKE_PREFIX_PATH", "PKG_CONFIG_PATH", "MAKEFLAGS", "CXXFLAGS",
                 "LD_LIBRARY_PATH", "KesraEngine_DIR", "KesraEngine_ROOT"):
        env.pop(name, None)
    return env


def forbidden_paths(args):
    return [os.path.realpath(p) for p in (args.source_dir, args.build_dir)]


def scan_for_paths(root, forbidden, all_files):
    """Names every file under root that mentions a forbidden directory: text
    files always, binaries too when all_files is set."""
    found = []
    for base, _dirs, files in os.walk(root):
        for name in files:
            path = os.path.join(base, name)
            if os.path.islink(path) or not (all_files or name.endswith(TEXT_SUFFIXES)):
                continue
            data = open(path, "rb").read()
            for directory in forbidden:
                if directory.encode() in data:
                    found.append(f"{os.path.relpath(path, root)} names {directory}")
    return found


def import_installed(site_dir):
    """Imports kesraengine from site_dir alone, away from the build tree, and runs one query."""
    probe = ("import kesraengine, sys; "
             "assert kesraengine.__file__.startswith(sys.argv[1]), kesraengine.__file__; "
             "print(kesraengine.ScalarBar(0, 1).colors([0.5]).tolist())")
    env = clean_env()
    env["PYTHONPATH"] = site_dir
    env.pop("LD_LIBRARY_PATH", None)
    # A sanitized module needs its runtime loaded before the interpreter,
    # which is not instrumented and whose own blocks are not the module's.
    if os.environ.get("KESRA_HOST_PRELOAD"):
        env["LD_PRELOAD"] = os.environ["KESRA_HOST_PRELOAD"]
        env["ASAN_OPTIONS"] = "detect_leaks=0"
    with tempfile.TemporaryDirectory() as elsewhere:
        out = run([sys.executable, "-c", probe, site_dir], cwd=elsewhere, env=env)
    if "255" not in out:
        raise Failure(f"the module installed in {site_dir} gave {out!r}")


def install(args):
    shutil.rmtree(args.prefix, ignore_errors=True)
    run(["cmake", "--install", args.build_dir, "--prefix", args.prefix, "--config", args.config])
    expected = ["include/KesraEngine/Engine/Camera.h", "include/KesraEngine/MathKit/Matrix4.h",
                "include/KesraEngine/MathKit/Export.h", "include/KesraEngine/null/NullBackend.h"]
    missing = [p for p in expected if not os.path.isfile(os.path.join(args.prefix, p))]
    # The null backend is a component of every installation, beside the package.
    cmake_files = {f for _b, _d, fs in os.walk(args.prefix) for f in fs if f.endswith(".cmake")}
    missing += [f for f in ("KesraEngineConfig.cmake", "KesraEngineNullComponent.cmake",
                            "KesraEngineNullTargets.cmake") if f not in cmake_files]
    doubles = [os.path.join(b, f) for b, _d, fs in os.walk(args.prefix) for f in fs
               if f == "TestDoubles.h" or "gtest" in f]
    found = scan_for_paths(args.prefix, forbidden_paths(args), all_files=False)
    if missing or doubles or found:
        raise Failure("install tree: missing " + str(missing) + ", test files " + str(doubles) +
                      ", absolute paths " + str(found))
    site_dir = os.path.join(args.prefix, "lib", "python3", "dist-packages")
    if os.path.isdir(os.path.join(site_dir, "kesraengine")):
        import_installed(site_dir)
    print(f"installed into {args.prefix}; no text file names the source or build tree")


def outsiders(nm_output):
    """The dynamic symbols that belong to neither of the library's namespaces."""
    bad = []
    for line in nm_output.splitlines():
        parts = line.split(maxsplit=2)
        if len(parts) < 3:
            continue
        name = parts[2]
        for prefix in SYMBOL_PREFIXES:
            if name.startswith(prefix):
                name = name[len(prefix):]
                break
        if not name.startswith(NAMESPACES):
            bad.append(line)
    return bad


def symbols(args):
    nm = run(["nm", "-DC", "--defined-only", args.library])
    bad = outsiders(nm)
    count = len(nm.splitlines())
    if count == 0 or bad:
        raise Failure(f"{count} dynamic symbols, of which outside the library's namespaces:\n" +
                      "\n".join(bad))
    print(f"{count} dynamic symbols, all in KesraEngine and KesraMathKit")


def cmake_host(args):
    shutil.rmtree(args.binary, ignore_errors=True)
    configure = ["cmake", "-S", args.host_source, "-B", args.binary, "-G", args.generator,
                 f"-DCMAKE_CXX_COMPILER={args.compiler}", f"-DCMAKE_BUILD_TYPE={args.config}",
                 f"-DCMAKE_PREFIX_PATH={args.prefix}", f"-DKESRA_EXPECTED_PREFIX={args.prefix}",
                 "-DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF", f"-DCMAKE_CXX_FLAGS={args.cxx_flags}",
                 f"-DKESRA_WANTED_VERSION={args.request or '.'.join(args.version.split('.')[:2])}",
                 f"-DKESRA_WANTED_COMPONENTS={';'.join(args.components)}"]
    env = clean_env()
    if args.expect_message:
        output = run(configure, env=env, expect_ok=False)
        if not re.search(args.expect_message, output):
            raise Failure(f"configure failed without saying /{args.expect_message}/:\n{output}")
        print(f"refused as expected: /{args.expect_message}/")
        return
    run(configure, env=env)
    run(["cmake", "--build", args.binary], env=env)
    hosts = ["host"] + [f"{c.lower()}-host" for c in args.components if c in ("Svg", "Gl", "Io", "Qt")]
    for host in hosts:
        host_env = dict(env)
        # What a sanitized build's graphics host must start with (see
        # tests/CMakeLists.txt); this script itself must not.
        if host == "gl-host" and os.environ.get("KESRA_HOST_PRELOAD"):
            host_env["LD_PRELOAD"] = os.environ["KESRA_HOST_PRELOAD"]
        print(run([os.path.join(args.binary, host)], env=host_env).strip())


def readme_pkgconfig_line(source_dir):
    """The README's pkg-config build line, as a user copies it."""
    for line in open(os.path.join(source_dir, "README.md"), encoding="utf-8"):
        line = line.strip()
        if line.startswith("c++ ") and "$(pkg-config" in line:
            return line
    raise Failure("README.md has no 'c++ ... $(pkg-config ...)' line")


def pkgconfig_host(args):
    os.makedirs(args.binary, exist_ok=True)
    env = clean_env()
    env["PKG_CONFIG_PATH"] = os.path.join(args.prefix, args.libdir, "pkgconfig")
    host = os.path.join(args.binary, "pkgconfig-host")
    # The README's line to the letter, with this build's compiler and flags
    # (sanitizers) in front and the host's file names in place of the
    # example's; the flags come from the shell's expansion.
    line = readme_pkgconfig_line(args.source_dir)
    words = line.split(" ")
    if words[0] != "c++" or "myviewer.cpp" not in words or words[-2:] != ["-o", "myviewer"]:
        raise Failure(f"the README's pkg-config line changed its form: {line}")
    words = [f"'{args.compiler}' {args.cxx_flags}".strip()] + \
        [f"'{args.host_file}'" if w == "myviewer.cpp" else w for w in words[1:-1]] + [f"'{host}'"]
    run(" ".join(words), env=env)
    # No LD_LIBRARY_PATH: the host must find the shared library (when the
    # build made one) in the prefix by itself, and that very library rather
    # than one installed elsewhere.
    libdir = os.path.realpath(os.path.join(args.prefix, args.libdir))
    if os.path.exists(os.path.join(libdir, "libKesraEngine.so.1")):
        found = re.search(r"libKesraEngine\.so\.1 => (\S+)", run(["ldd", host], env=env))
        if not found or os.path.dirname(os.path.realpath(found.group(1))) != libdir:
            raise Failure(f"the host does not load libKesraEngine.so.1 from {libdir}: "
                          f"{found.group(1) if found else 'not found'}")
    print(run([host], env=env).strip())
    version = run(["pkg-config", "--modversion", "kesraengine"], env=env).strip()
    if version != args.version:
        raise Failure(f"pkg-config says version {version}, expected {args.version}")


def deb_contents(deb):
    listing = run(["dpkg-deb", "-c", deb])
    # "drwxr-xr-x root/root 0 2026-11-25 06:00 ./usr/lib/ [-> target]"
    return [line.split(None, 5)[5].split(" -> ")[0] for line in listing.splitlines()]


def deb(args):
    shutil.rmtree(args.out, ignore_errors=True)
    run(["cpack", "-G", "DEB", "--config", os.path.join(args.build_dir, "CPackConfig.cmake"),
         "-B", args.out])
    arch = run(["dpkg", "--print-architecture"]).strip()
    version = args.version
    debs = sorted(f for f in os.listdir(args.out) if f.endswith(".deb"))
    names = {f"libkesraengine-dev_{version}_{arch}.deb"}
    if args.with_gl:
        names.add(f"libkesraengine-gl-dev_{version}_{arch}.deb")
    if args.with_io:
        names.add(f"libkesraengine-io-dev_{version}_{arch}.deb")
    if args.with_qt:
        names.add(f"libkesraengine-qt-dev_{version}_{arch}.deb")
    if not args.static:
        names.add(f"libkesraengine1_{version}_{arch}.deb")
    if args.with_python:
        names.add(f"python3-kesraengine_{version}_{arch}.deb")
    if set(debs) != names:
        raise Failure(f"packages {debs}, expected {sorted(names)}")

    files = {}
    for name in debs:
        path = os.path.join(args.out, name)
        fields = run(["dpkg-deb", "-f", path, "Package", "Version", "Architecture", "Depends"])
        package = name.split("_")[0]
        for wanted in (f"Package: {package}", f"Version: {version}", f"Architecture: {arch}"):
            if wanted not in fields:
                raise Failure(f"{name}: no '{wanted}' in\n{fields}")
        if package == "libkesraengine1" and not re.search(r"libstdc\+\+6", fields):
            raise Failure(f"{name}: the runtime must depend on libstdc++6:\n{fields}")
        if package == "libkesraengine-dev" and not args.static and \
                f"libkesraengine1 (= {version})" not in fields:
            raise Failure(f"{name}: the development files must depend on this runtime:\n{fields}")
        if package == "libkesraengine-gl-dev":
            for needed in (f"libkesraengine-dev (= {version})", "libegl-dev", "libgl-dev",
                           "libfreetype-dev", "fonts-dejavu-core"):
                if needed not in fields:
                    raise Failure(f"{name}: no dependency on {needed}:\n{fields}")
        if package == "libkesraengine-io-dev":
            for needed in (f"libkesraengine-dev (= {version})", "libexpat1-dev", "zlib1g-dev"):
                if needed not in fields:
                    raise Failure(f"{name}: no dependency on {needed}:\n{fields}")
        if package == "python3-kesraengine":
            needed = ["python3-numpy", "libegl1", "libgl1-mesa-dri", "fonts-dejavu-core", "python3 (>= 3."]
            needed += [] if args.static else [f"libkesraengine1 (= {version})"]
            for wanted in needed:
                if wanted not in fields:
                    raise Failure(f"{name}: no dependency on {wanted}:\n{fields}")
        if package == "libkesraengine-qt-dev":
            for needed in (f"libkesraengine-dev (= {version})", f"libkesraengine-gl-dev (= {version})",
                           "qt6-base-dev", "libqt6opengl6-dev"):
                if needed not in fields:
                    raise Failure(f"{name}: no dependency on {needed}:\n{fields}")
        files[package] = deb_contents(path)
        with tempfile.TemporaryDirectory() as tree:
            run(["dpkg-deb", "-x", path, tree])
            # Debug information names the sources by design; a build without
            # it must not name them anywhere.
            found = scan_for_paths(tree, forbidden_paths(args),
                                   all_files=args.config in ("Release", "MinSizeRel"))
            if found:
                raise Failure(f"{name}: " + "; ".join(found))

    dev = files["libkesraengine-dev"]
    wanted_dev = [r"/include/KesraEngine/Engine/Camera\.h$", r"/include/KesraEngine/MathKit/Vector3\.h$",
                  r"/cmake/KesraEngine/KesraEngineConfig\.cmake$",
                  r"/cmake/KesraEngine/KesraEngineConfigVersion\.cmake$",
                  r"/cmake/KesraEngine/KesraEngineTargets\.cmake$", r"/pkgconfig/kesraengine\.pc$",
                  r"/include/KesraEngine/null/NullBackend\.h$", r"/KesraEngineNullComponent\.cmake$"]
    wanted_dev += [r"/libKesraEngine\.a$"] if args.static else [r"/libKesraEngine\.so$"]
    if args.with_svg:
        wanted_dev += [r"/include/KesraEngine/svg/SvgRenderer\.h$", r"/libKesraSvgBackend\.a$",
                       r"/KesraEngineSvgComponent\.cmake$"]
    wanted_dev += [r"/include/KesraEngine/common/RubberBand\.h$"] if args.with_svg or args.with_gl else []
    wanted = {"libkesraengine-dev": wanted_dev}
    if args.with_gl:
        wanted["libkesraengine-gl-dev"] = [r"/include/KesraEngine/gl/GlRenderer\.h$",
                                           r"/libKesraGlBackend\.a$", r"/KesraEngineGlComponent\.cmake$"]
    if args.with_io:
        wanted["libkesraengine-io-dev"] = [r"/include/KesraEngine/KesraIo/Reader\.h$",
                                           r"/libKesraIo\.a$", r"/KesraEngineIoComponent\.cmake$"]
    if args.with_qt:
        wanted["libkesraengine-qt-dev"] = [r"/include/KesraEngine/qt/SceneWidget\.h$",
                                           r"/libKesraQtWidget\.a$", r"/KesraEngineQtComponent\.cmake$"]
    if not args.static:
        wanted["libkesraengine1"] = [r"/libKesraEngine\.so\.1$", r"/libKesraEngine\.so\.1\.0\.0$"]
        if any(re.search(r"\.so", f) for f in dev if not f.endswith("libKesraEngine.so")):
            raise Failure("the development package holds a versioned shared object")
    if args.with_python:
        wanted["python3-kesraengine"] = [
            r"/usr/lib/python3/dist-packages/kesraengine/__init__\.py$",
            r"/usr/lib/python3/dist-packages/kesraengine/__init__\.pyi$",
            r"/usr/lib/python3/dist-packages/kesraengine/py\.typed$",
            r"/usr/lib/python3/dist-packages/kesraengine/_kesraengine\.cpython-3\d+-[\w-]+\.so$"]
    for package, patterns in wanted.items():
        for pattern in patterns:
            if not any(re.search(pattern, f) for f in files[package]):
                raise Failure(f"{package} lacks /{pattern}/; it holds:\n" + "\n".join(files[package]))
    unwanted = re.compile(r"(Test|test|gtest|gmock|CMakeFiles|\.o$|build/|/tests?/|quickstart|demo)")
    stray = [f for package in files for f in files[package] if unwanted.search(f)]
    if stray:
        raise Failure("files from the tests or the build tree: " + ", ".join(stray))
    if args.with_python:
        # The module and the library it links, unpacked together anywhere.
        with tempfile.TemporaryDirectory() as tree:
            for name in debs:
                if name.startswith(("python3-kesraengine_", "libkesraengine1_")):
                    run(["dpkg-deb", "-x", os.path.join(args.out, name), tree])
            import_installed(os.path.join(tree, "usr", "lib", "python3", "dist-packages"))
    print(f"{', '.join(debs)}: {sum(len(v) for v in files.values())} entries, fields and files as expected")


def static(args):
    build = os.path.join(args.binary, "build")
    prefix = os.path.join(args.binary, "install")
    shutil.rmtree(args.binary, ignore_errors=True)
    env = clean_env()
    # No build type given: the project must choose Release itself, which also
    # lets every byte of the archive be checked for paths of this machine.
    run(["cmake", "-S", args.source_dir, "-B", build, "-G", args.generator,
         f"-DCMAKE_CXX_COMPILER={args.compiler}",
         "-DBUILD_SHARED_LIBS=OFF", "-DBUILD_TESTING=OFF", "-DKESRA_BUILD_EXAMPLES=OFF",
         "-DKESRA_BUILD_BACKENDS=OFF", "-DKESRA_BUILD_IO=OFF",
         "-DKESRA_BUILD_BENCHMARKS=OFF", "-DKESRA_WARNINGS_AS_ERRORS=ON"], env=env)
    cache = open(os.path.join(build, "CMakeCache.txt")).read()
    if "CMAKE_BUILD_TYPE:STRING=Release" not in cache:
        raise Failure("a build without a build type did not default to Release")
    args.config = "Release"
    run(["cmake", "--build", build, "--parallel", "2"], env=env)
    run(["cmake", "--install", build, "--prefix", prefix], env=env)
    libdir = next(os.path.relpath(b, prefix) for b, _d, fs in os.walk(prefix)
                  if "libKesraEngine.a" in fs)
    if any(f.startswith("libKesraEngine.so") for f in os.listdir(os.path.join(prefix, libdir))):
        raise Failure("a static build installed a shared object")
    host_args = argparse.Namespace(**vars(args))
    host_args.prefix = prefix
    host_args.binary = os.path.join(args.binary, "cmake-host")
    host_args.components = []
    host_args.expect_message = None
    host_args.request = None
    host_args.cxx_flags = ""
    cmake_host(host_args)
    host_args.binary = os.path.join(args.binary, "pkgconfig-host")
    host_args.libdir = libdir
    pkgconfig_host(host_args)
    deb_args = argparse.Namespace(**vars(args))
    deb_args.build_dir = build
    deb_args.out = os.path.join(args.binary, "packages")
    deb_args.static = True
    deb_args.with_svg = False
    deb_args.with_gl = False
    deb_args.with_io = False
    deb_args.with_python = False
    deb_args.with_qt = False
    deb(deb_args)
    print("static library: installed, found by CMake and pkg-config, packaged")


def demo_build_targets(source_dir):
    """The targets that `cmake --workflow --preset demo` builds."""
    with open(os.path.join(source_dir, "CMakePresets.json"), encoding="utf-8") as f:
        presets = json.load(f)
    workflow = next((w for w in presets.get("workflowPresets", []) if w["name"] == "demo"), None)
    if workflow is None:
        raise Failure("CMakePresets.json has no demo workflow")
    builds = [s["name"] for s in workflow["steps"] if s["type"] == "build"]
    targets = set()
    for preset in presets.get("buildPresets", []):
        if preset["name"] in builds:
            # A build preset without targets builds everything.
            targets |= set(preset.get("targets", ["all"]))
    return targets


def readme_programs(source_dir):
    """The programs the README places in a build tree, such as
    build/demo/examples/viewer/kesra-viewer."""
    with open(os.path.join(source_dir, "README.md"), encoding="utf-8") as f:
        text = f.read()
    return set(re.findall(r"build/[\w-]+/examples/[\w-]+/([\w-]+)(?![\w.-])", text))


def demo_workflow(args):
    programs = set(args.programs)
    if not programs:
        raise Failure("the build reported no example programs")
    named = readme_programs(args.source_dir)
    strangers = named - programs
    if strangers:
        raise Failure(f"the README names {sorted(strangers)} under build/, which are not example "
                      f"programs ({sorted(programs)})")
    targets = demo_build_targets(args.source_dir)
    missing = set() if "all" in targets else programs - targets
    if missing:
        raise Failure(f"the demo workflow builds {sorted(targets)}, not {sorted(missing)}")
    print(f"the demo workflow builds {sorted(programs)}; the README names {sorted(named)}")


def configure(args, binary, options, expect_ok):
    """Configures the project with options; returns the output."""
    shutil.rmtree(binary, ignore_errors=True)
    # Ask CMake's file API for the targets, whatever the generator.
    query = os.path.join(binary, ".cmake", "api", "v1", "query")
    os.makedirs(query)
    open(os.path.join(query, "codemodel-v2"), "w").close()
    return run(["cmake", "-S", args.source_dir, "-B", binary, "-G", args.generator,
                f"-DCMAKE_CXX_COMPILER={args.compiler}"] + options, env=clean_env(),
               expect_ok=expect_ok)


def configured_targets(binary):
    reply = os.path.join(binary, ".cmake", "api", "v1", "reply")
    index = next(f for f in os.listdir(reply) if f.startswith("index-"))
    with open(os.path.join(reply, index), encoding="utf-8") as f:
        codemodel = json.load(f)["reply"]["codemodel-v2"]["jsonFile"]
    with open(os.path.join(reply, codemodel), encoding="utf-8") as f:
        configurations = json.load(f)["configurations"]
    return {t["name"] for c in configurations for t in c["targets"]}


def build_options(args):
    common = ["-DBUILD_TESTING=OFF", "-DKESRA_BUILD_BENCHMARKS=OFF", "-DKESRA_INSTALL=OFF"]
    backends_only = os.path.join(args.binary, "backends-only")
    configure(args, backends_only,
              common + ["-DKESRA_BUILD_BACKENDS=ON", "-DKESRA_BUILD_EXAMPLES=OFF"], True)
    targets = configured_targets(backends_only)
    # The file API lists targets that build something: the header-only ones
    # (null backend, backend common) are not among them.
    wanted = {"KesraEngine", "KesraSvgBackend", "KesraGlBackend"}
    unwanted = {"kesra-demo", "kesra-viewer", "kesra-quickstart", "KesraExampleCommon"}
    if not wanted <= targets or targets & unwanted:
        raise Failure(f"backends without examples configured {sorted(targets)}")

    refused = configure(args, os.path.join(args.binary, "examples-only"),
                        common + ["-DKESRA_BUILD_BACKENDS=OFF", "-DKESRA_BUILD_EXAMPLES=ON"], False)
    if not re.search(r"KESRA_BUILD_EXAMPLES(.|\n)*KESRA_BUILD_BACKENDS", refused):
        raise Failure(f"examples without backends refused without naming both switches:\n{refused}")
    print("backends configure without the examples; examples without backends are refused")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("command", choices=["install", "symbols", "cmake-host", "pkgconfig-host",
                                            "deb", "static", "demo-workflow", "options"])
    parser.add_argument("--source-dir")
    parser.add_argument("--build-dir")
    parser.add_argument("--prefix")
    parser.add_argument("--libdir", default="lib")
    parser.add_argument("--config", default="Release")
    parser.add_argument("--library")
    here = os.path.dirname(os.path.abspath(__file__))
    parser.add_argument("--host-source", default=os.path.join(here, "find_package"))
    parser.add_argument("--host-file", default=os.path.join(here, "host", "main.cpp"))
    parser.add_argument("--binary")
    parser.add_argument("--generator", default="Unix Makefiles")
    parser.add_argument("--compiler", default="c++")
    parser.add_argument("--version", default="", help="the project's version")
    parser.add_argument("--request", help="the version a host asks for; default major.minor")
    parser.add_argument("--components", nargs="*", default=[])
    parser.add_argument("--expect-message")
    parser.add_argument("--out")
    parser.add_argument("--cxx-flags", default="",
                        help="flags the library was built with that its hosts need too (sanitizers)")
    parser.add_argument("--static", action="store_true")
    parser.add_argument("--with-svg", action="store_true")
    parser.add_argument("--with-gl", action="store_true")
    parser.add_argument("--with-io", action="store_true")
    parser.add_argument("--with-python", action="store_true")
    parser.add_argument("--with-qt", action="store_true")
    parser.add_argument("--programs", nargs="*", default=[], help="the example programs")
    args = parser.parse_args()
    try:
        {"install": install, "symbols": symbols, "cmake-host": cmake_host,
         "pkgconfig-host": pkgconfig_host, "deb": deb, "static": static,
         "demo-workflow": demo_workflow, "options": build_options}[args.command](args)
    except Failure as failure:
        print(f"FAIL: {failure}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
