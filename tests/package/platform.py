#!/usr/bin/env python3
"""Builds and installs the module against a platform's own headers, and checks that no model comes along.

The platform is the declarations of the in-memory host, copied to a place of their own, and no library: what a module
leaves undefined is the loader's business.

Usage: platform.py ROOT WORK COMPILER
"""
import pathlib
import shutil
import subprocess
import sys

from installed import run

OPTIONS = ("-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0", "-DHOLDFAST_WORKBENCH=OFF", "-DBUILD_TESTING=OFF")
USER = """cmake_minimum_required(VERSION 3.20)
project(User LANGUAGES CXX)
find_package(Holdfast 0.1 REQUIRED COMPONENTS {components})
add_library(user OBJECT user.cpp)
target_link_libraries(user PRIVATE Holdfast::holdfast)
"""
COMMAND = """#include "commands/break/ConstraintBreakCmdCenter.h"
int breakNothing() {
    ConstraintBreakCmdCenter centre;
    return centre.deleteConstraint();
}
"""


def configure_user(work, prefix, components, *options):
    user = work / "platform-user"
    shutil.rmtree(user, ignore_errors=True)
    user.mkdir(parents=True)
    (user / "CMakeLists.txt").write_text(USER.format(components=components))
    (user / "user.cpp").write_text(COMMAND)
    command = ["cmake", "-G", "Ninja", "-S", user, "-B", user / "build", f"-DCMAKE_PREFIX_PATH={prefix}", *options]
    return subprocess.run(command, capture_output=True, text=True)


def main(root, work, compiler):
    build, prefix, platform = work / "platform-build", work / "platform-prefix", work / "platform"
    for folder in (prefix, platform, work / "platform-moved"):
        shutil.rmtree(folder, ignore_errors=True)
    shutil.copytree(root / "host/include", platform)
    run("cmake", "-G", "Ninja", "-S", root, "-B", build, f"-DCMAKE_CXX_COMPILER={compiler}", *OPTIONS,
        f"-DHOLDFAST_HOST_HEADERS={platform}")
    run("cmake", "--build", build)
    run("cmake", "--install", build, "--prefix", prefix)
    model = [path for path in prefix.rglob("*") if "host" in path.parts[len(prefix.parts):] or "model" in path.name.lower()]
    if model:
        sys.exit("installed, although the platform is real: " + ", ".join(str(path) for path in model))

    without = configure_user(work, prefix, "host_model")
    if without.returncode == 0 or "host_model" not in without.stderr:
        sys.exit(f"find_package finds a host model that is not there\n{without.stdout}{without.stderr}")
    # The platform of the machine that uses the module lies elsewhere.
    platform.rename(work / "platform-moved")
    found = configure_user(work, prefix, "holdfast", f"-DCMAKE_CXX_COMPILER={compiler}",
                           f"-DHOLDFAST_HOST_HEADERS={work / 'platform-moved'}")
    if found.returncode:
        sys.exit(found.stdout + found.stderr)
    run("cmake", "--build", work / "platform-user/build")
    print("the module is built against the platform's headers, and no model comes along")


if __name__ == "__main__":
    main(*(pathlib.Path(path).resolve() for path in sys.argv[1:3]), sys.argv[3])
