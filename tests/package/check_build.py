#!/usr/bin/env python3
"""Checks of the build's switches and presets as a new user meets them.

Each subcommand is one ctest test:
  demo-workflow  the demo workflow's build step makes every example program,
                 and every program the README names under build/ is one
  options        KESRA_BUILD_BACKENDS without the examples configures the
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


class Failure(Exception):
    pass


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
    env = dict(os.environ)
    env.pop("CMAKE_PREFIX_PATH", None)
    proc = subprocess.run(["cmake", "-S", args.source_dir, "-B", binary, "-G", args.generator,
                           f"-DCMAKE_CXX_COMPILER={args.compiler}"] + options, env=env,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    if (proc.returncode == 0) != expect_ok:
        raise Failure(f"configure with {' '.join(options)} exited with {proc.returncode}:\n"
                      f"{proc.stdout}")
    return proc.stdout


def configured_targets(binary):
    reply = os.path.join(binary, ".cmake", "api", "v1", "reply")
    index = next(f for f in os.listdir(reply) if f.startswith("index-"))
    with open(os.path.join(reply, index), encoding="utf-8") as f:
        codemodel = json.load(f)["reply"]["codemodel-v2"]["jsonFile"]
    with open(os.path.join(reply, codemodel), encoding="utf-8") as f:
        configurations = json.load(f)["configurations"]
    return {t["name"] for c in configurations for t in c["targets"]}


def options(args):
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
    parser.add_argument("command", choices=["demo-workflow", "options"])
    parser.add_argument("--source-dir", required=True)
    parser.add_argument("--programs", nargs="*", default=[])
    parser.add_argument("--binary")
    parser.add_argument("--generator", default="Unix Makefiles")
    parser.add_argument("--compiler", default="c++")
    args = parser.parse_args()
    try:
        {"demo-workflow": demo_workflow, "options": options}[args.command](args)
    except Failure as failure:
        print(f"FAIL: {failure}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
