#!/usr/bin/env python3
"""Builds and installs the module against a platform, and checks that it needs nothing but the public declarations, that
no model comes along, and that a folder without a platform is refused.

The platform is a bare second set of the declarations, with other private data and no inline bodies, and no library:
what a module leaves undefined is the loader's business.

Usage: platform.py ROOT WORK COMPILER
"""
import os
import pathlib
import shutil
import subprocess
import sys

from bare_platform import write_bare_set
from installed import run

OPTIONS = ("-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0", "-DHOLDFAST_ENGINE=OFF", "-DHOLDFAST_SOLVER=OFF", "-DHOLDFAST_TESTS=OFF")
USER = """cmake_minimum_required(VERSION 3.20)
project(User LANGUAGES CXX)
find_package(Holdfast 0.2 REQUIRED COMPONENTS {components})
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


def refuse_no_platform(root, work):
    command = ["cmake", "-G", "Ninja", "-S", root, "-B", work / "no-platform", *OPTIONS,
               "-DHOLDFAST_HOST_HEADERS=/nosuch"]
    result = subprocess.run(command, capture_output=True, text=True)
    told = " ".join(result.stderr.split())
    if result.returncode == 0 or "HOLDFAST_HOST_HEADERS names /nosuch" not in told:
        sys.exit(f"a platform that is not there is taken\n{result.stdout}{result.stderr}")


def check_pkgconfig(prefix, platform, elsewhere):
    """Names the platform's headers and libraries; the headers may lie elsewhere."""
    if not shutil.which("pkg-config"):
        return
    folder = next(prefix.rglob("holdfast.pc")).parent
    environment = {**os.environ, "PKG_CONFIG_PATH": str(folder)}
    environment.pop("PKG_CONFIG_LIBDIR", None)
    told = run("pkg-config", "--cflags", "--libs", "holdfast", env=environment).split()
    if f"-I{platform}" not in told or "-lm" not in told:
        sys.exit(f"pkg-config does not name the platform's headers and libraries: {' '.join(told)}")
    moved = run("pkg-config", f"--define-variable=host_headers={elsewhere}", "--cflags", "holdfast", env=environment)
    if f"-I{elsewhere}" not in moved.split():
        sys.exit(f"pkg-config does not look for the platform's headers in {elsewhere}: {moved}")


def main(root, work, compiler):
    build, prefix, platform, elsewhere = (work / f"platform{name}" for name in ("-build", "-prefix", "", "-elsewhere"))
    for folder in (prefix, elsewhere):
        shutil.rmtree(folder, ignore_errors=True)
    refuse_no_platform(root, work)
    write_bare_set(root / "host/include", platform)
    run("cmake", "-G", "Ninja", "-S", root, "-B", build, f"-DCMAKE_CXX_COMPILER={compiler}", *OPTIONS,
        f"-DHOLDFAST_HOST_HEADERS={platform}", "-DHOLDFAST_HOST_LIBRARIES=m")
    run("cmake", "--build", build)
    run("cmake", "--install", build, "--prefix", prefix)
    names = [path.relative_to(prefix) for path in prefix.rglob("*")]
    if model := [str(name) for name in names if "host" in name.parts or "model" in name.name.lower()]:
        sys.exit("installed, although the platform is real: " + ", ".join(model))

    without = configure_user(work, prefix, "host_model")
    if without.returncode == 0 or "host_model" not in without.stderr:
        sys.exit(f"find_package finds a host model that is not there\n{without.stdout}{without.stderr}")
    # On the machine that uses the module, the platform may lie elsewhere.
    shutil.copytree(platform, elsewhere)
    check_pkgconfig(prefix, platform, elsewhere)
    found = configure_user(work, prefix, "holdfast", f"-DCMAKE_CXX_COMPILER={compiler}",
                           f"-DHOLDFAST_HOST_HEADERS={elsewhere}")
    if found.returncode:
        sys.exit(found.stdout + found.stderr)
    commands = run("ninja", "-C", work / "platform-user/build", "-t", "commands")
    if str(elsewhere) not in commands or f"{platform} " in commands:
        sys.exit(f"the platform's headers are not looked for in {elsewhere}:\n{commands}")
    run("cmake", "--build", work / "platform-user/build")
    print("the module needs only the public declarations, and no model comes along")


if __name__ == "__main__":
    main(*(pathlib.Path(path).resolve() for path in sys.argv[1:3]), sys.argv[3])
