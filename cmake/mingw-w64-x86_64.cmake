# Cross-build for 64-bit Windows with Debian's MinGW-w64 (the POSIX thread model, for
# std::thread and std::mutex).
#
#   cmake -S . -B build-windows -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake \
#         -DPREFA_MINGW_PREFIX=<folder of the cross-built dependencies>
#
# scripts/mingw-deps builds that folder (GoogleTest, Clipper, libzip, and the header-only
# {fmt} and nlohmann-json) and prints its path. When Wine is installed, the test programs
# run through scripts/wine-run, so that ctest works as on Linux.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(PREFA_MINGW_TRIPLET x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${PREFA_MINGW_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${PREFA_MINGW_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${PREFA_MINGW_TRIPLET}-windres)

# Try-compile projects see the prefix too.
set(PREFA_MINGW_PREFIX "$ENV{PREFA_MINGW_PREFIX}" CACHE PATH "Cross-built dependencies (scripts/mingw-deps)")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES PREFA_MINGW_PREFIX)

set(CMAKE_FIND_ROOT_PATH /usr/${PREFA_MINGW_TRIPLET} ${PREFA_MINGW_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# pkg-config answers for Windows, not for the build machine.
if(PREFA_MINGW_PREFIX)
  set(ENV{PKG_CONFIG_LIBDIR} "${PREFA_MINGW_PREFIX}/lib/pkgconfig")
  set(ENV{PKG_CONFIG_SYSROOT_DIR} "")
endif()

# The C and C++ run-times and winpthread linked in, so that the programs and prefa.dll
# need no MinGW DLL beside them; a DLL exports its own symbols only, not theirs (a
# program linking it has its own copy of the run-times). A static zlib, too.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(PREFA_MINGW_NOT_EXPORTED
  libgcc.a libgcc_eh.a libstdc++.a libwinpthread.a libpthread.a libmingwex.a libmingw32.a libpolyclipping.a libz.a libzip.a)
string(REPLACE ";" ":" PREFA_MINGW_NOT_EXPORTED "${PREFA_MINGW_NOT_EXPORTED}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static -Wl,--exclude-libs,${PREFA_MINGW_NOT_EXPORTED}")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static -Wl,--exclude-libs,${PREFA_MINGW_NOT_EXPORTED}")
set(ZLIB_USE_STATIC_LIBS ON)

find_program(PREFA_WINE wine)
if(PREFA_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/wine-run)
endif()
