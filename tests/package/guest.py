#!/usr/bin/env python3
"""Takes this project into another one, by add_subdirectory and by FetchContent, and checks that the guest behaves:
the other project keeps its flags, its folders, its kind of build, its tests, its installation and its packages.

Usage: guest.py ROOT WORK COMPILER [FLAG ...]
"""
import json
import pathlib
import re
import shutil
import sys

from installed import compare, run

PROJECT = """cmake_minimum_required(VERSION 3.25)
project(Family LANGUAGES CXX)
enable_testing()
{take_in}
foreach(target IN ITEMS holdfast host_model host_api {targets})
  if(NOT TARGET Holdfast::${{target}})
    message(FATAL_ERROR "Holdfast::${{target}} is missing")
  endif()
endforeach()
foreach(variable IN ITEMS CMAKE_RUNTIME_OUTPUT_DIRECTORY CMAKE_LIBRARY_OUTPUT_DIRECTORY CMAKE_BUILD_TYPE
                          CMAKE_CXX_STANDARD CMAKE_POSITION_INDEPENDENT_CODE)
  if(NOT "${{${{variable}}}}" STREQUAL "")
    message(FATAL_ERROR "the guest sets ${{variable}} to ${{${{variable}}}}")
  endif()
endforeach()
add_executable(family {root}/examples/consumer/main.cpp)
target_link_libraries(family PRIVATE Holdfast::holdfast Holdfast::host_model)
"""
WAYS = {
    "add_subdirectory": "add_subdirectory({root} guest EXCLUDE_FROM_ALL)",
    "FetchContent": "include(FetchContent)\nFetchContent_Declare(holdfast SOURCE_DIR {root})\n"
                    "FetchContent_MakeAvailable(holdfast)",
}
OWN_FLAG = "-DFAMILY=1"


def configure(way, root, work, compiler, flags):
    source, build = work / f"guest-{way}", work / f"guest-{way}/build"
    shutil.rmtree(source, ignore_errors=True)
    source.mkdir(parents=True)
    take_in = WAYS[way].format(root=root)
    targets = "solver" if (root / "solver/include").is_dir() else ""
    (source / "CMakeLists.txt").write_text(PROJECT.format(take_in=take_in, root=root, targets=targets))
    launcher = ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"] if shutil.which("ccache") else []
    run("cmake", "-G", "Ninja", "-S", source, "-B", build, f"-DCMAKE_CXX_COMPILER={compiler}", *launcher,
        f"-DCMAKE_CXX_FLAGS={' '.join((OWN_FLAG, *flags))}", "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON")
    return build


def faults_of(build):
    commands = [entry["command"] for entry in json.loads((build / "compile_commands.json").read_text())]
    if not commands:
        yield "nothing is compiled"
    for pattern, fault in ((r" -Werror", "lets no warning pass"), (r" -W[a-z]", "asks for warnings"),
                           (r" -O\d| -g\d?\b", "sets the kind of build"), (r" -DNDEBUG", "takes assertions out")):
        if any(re.search(pattern, command) for command in commands):
            yield f"the guest {fault}"
    if not all(OWN_FLAG in command for command in commands):
        yield "the guest drops the project's own flags"
    cache = (build / "CMakeCache.txt").read_text()
    yield from (f"the guest has {found} in the cache" for found in re.findall(r"^CMAKE_BUILD_TYPE:\w+=.+", cache, re.M))
    if "Total Tests: 0" not in run("ctest", "--test-dir", build, "-N"):
        yield "the guest brings its tests"
    yield from (f"the guest makes {name}" for name in ("bin", "lib", "CPackConfig.cmake") if (build / name).exists())
    installed = [path for path in build.rglob("cmake_install.cmake") if "file(INSTALL" in path.read_text()]
    yield from (f"the guest installs itself: {path}" for path in installed)


def main(root, work, compiler, *flags):
    builds = {way: configure(way, root, work, compiler, flags) for way in WAYS}
    faults = [f"{way}: {fault}" for way, build in builds.items() for fault in faults_of(build)]
    if faults:
        sys.exit("\n".join(faults))
    build = builds["add_subdirectory"]
    run("cmake", "--build", build, "--target", "family")
    compare(root, run(build / "family"))
    if made := [str(path) for path in (build / "bin", build / "lib") if path.exists()]:
        sys.exit("the guest makes folders of its own: " + ", ".join(made))
    print("a good guest, by " + " and by ".join(WAYS))


if __name__ == "__main__":
    main(*(pathlib.Path(path).resolve() for path in sys.argv[1:3]), *sys.argv[3:])
