# Tool chain file: Debian's mingw-w64 and the libraries at build/windows-sdk, which
# scripts/windows/sdk.sh puts there.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(triplet x86_64-w64-mingw32)
# The posix flavour: the other one has no std::thread and no std::mutex.
set(CMAKE_C_COMPILER ${triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${triplet}-windres)

get_filename_component(MIRAVEL_WINDOWS_LIBRARIES "${CMAKE_CURRENT_LIST_DIR}/../build/windows-sdk"
                       ABSOLUTE)
if(NOT EXISTS "${MIRAVEL_WINDOWS_LIBRARIES}/qt5")
    message(FATAL_ERROR "no tool chain at ${MIRAVEL_WINDOWS_LIBRARIES}: run scripts/windows/sdk.sh")
endif()

# Programs run here and come from here; headers and libraries never do.
set(CMAKE_FIND_ROOT_PATH "${MIRAVEL_WINDOWS_LIBRARIES}/qt5" "${MIRAVEL_WINDOWS_LIBRARIES}/openssl"
                         /usr/${triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# In lib64, where CMake does not look; these are the names that its module asks for.
set(LIB_EAY "${MIRAVEL_WINDOWS_LIBRARIES}/openssl/lib64/libcrypto.dll.a"
    CACHE FILEPATH "")
set(SSL_EAY "${MIRAVEL_WINDOWS_LIBRARIES}/openssl/lib64/libssl.dll.a" CACHE FILEPATH "")

# The same bytes wherever the checkout lies and whenever it is built. Symbols are kept apart from
# what is shipped; see MiravelWindows.cmake. Not -ffile-prefix-map: it would win over the maps that
# make the file names of log lines bare.
get_filename_component(MIRAVEL_CHECKOUT "${CMAKE_CURRENT_LIST_DIR}/.." ABSOLUTE)
# A compiler cache may hand files over by their path from the build folder, and finds what it has without
# looking at these maps: the definition is for the cache, to be changed with the maps.
get_filename_component(MIRAVEL_LIBRARIES_PLACE "${MIRAVEL_WINDOWS_LIBRARIES}" REALPATH)
set(CMAKE_CXX_FLAGS_RELEASE_INIT "-g1 -gno-record-gcc-switches -DMIRAVEL_DEBUG_PATHS=2")
foreach(map "${MIRAVEL_CHECKOUT}/=" "${MIRAVEL_CHECKOUT}/build/windows/=" ../../= "${MIRAVEL_LIBRARIES_PLACE}=build/windows-sdk"
            ../windows-sdk=build/windows-sdk)
    string(APPEND CMAKE_CXX_FLAGS_RELEASE_INIT " -fdebug-prefix-map=${map}")
endforeach()
set(CMAKE_EXE_LINKER_FLAGS_RELEASE_INIT "-Wl,--no-insert-timestamp")
set(CMAKE_MODULE_LINKER_FLAGS_RELEASE_INIT "-Wl,--no-insert-timestamp")

# Built test programs run through Wine; the wrapper finds their libraries.
set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../scripts/windows/wine_run.sh")
