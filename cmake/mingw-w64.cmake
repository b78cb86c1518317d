# Builds for 64-bit Windows on another system, with mingw-w64 and POSIX threads; what was built runs under wine, if
# that is there. scripts/windows does all of it, and builds the test libraries that are looked for here.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(HOLDFAST_TARGET_LIBRARIES "${CMAKE_CURRENT_LIST_DIR}/../build/mingw-libraries" CACHE PATH "Test libraries for Windows")
# Libraries of the build machine are never taken for those of the target.
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 "${HOLDFAST_TARGET_LIBRARIES}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

find_program(HOLDFAST_WINE NAMES wine64 wine PATHS /usr/lib/wine)
if(HOLDFAST_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR "${HOLDFAST_WINE}")
endif()
