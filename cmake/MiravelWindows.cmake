# What the program needs on Windows beside its sources.

# Reserved, not used: 128 guard questions may nest event loops, more than 16 KiB of stack each.
set(MIRAVEL_STACK_BYTES 16777216)

set(MIRAVEL_COMPANY "Ostrel Technologies Co., Ltd."
    CACHE STRING "The maker, in the version resource and the packages")

set(MIRAVEL_TRIPLET x86_64-w64-mingw32)

# The linker orders what is imported by the paths of the import libraries, which are therefore named by
# their place in the build folder: the same in every checkout.
set(MIRAVEL_IMPORTS "${CMAKE_BINARY_DIR}/imports")
file(CREATE_LINK "${MIRAVEL_WINDOWS_LIBRARIES}/qt5/lib" "${MIRAVEL_IMPORTS}" SYMBOLIC)
foreach(module Core Gui Network Widgets)
    set_target_properties(Qt5::${module} PROPERTIES IMPORTED_IMPLIB_RELEASE
                                                    "${MIRAVEL_IMPORTS}/libQt5${module}.a")
endforeach()

# miravel_windows_version(<target> <description>): the version, company and rights of all programs.
function(miravel_windows_version target program_description)
    enable_language(RC)
    configure_file("${PROJECT_SOURCE_DIR}/packaging/windows/version.rc.in"
                   "${CMAKE_CURRENT_BINARY_DIR}/${target}-version.rc" @ONLY)
    target_sources(${target} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/${target}-version.rc")
endfunction()

# miravel_roomy_stack(<target>): for a program with the window, which waits in nested event loops.
function(miravel_roomy_stack target)
    target_link_options(${target} PRIVATE "-Wl,--stack,${MIRAVEL_STACK_BYTES}")
endfunction()

# miravel_windows_program(<target>): no console, icon, version and manifest, a roomy stack, symbols in
# build/windows/symbols/<file>.debug.
function(miravel_windows_program target)
    miravel_windows_version(${target} "${target}")
    foreach(file miravel.rc miravel.exe.manifest)
        configure_file("${PROJECT_SOURCE_DIR}/packaging/windows/${file}.in"
                       "${CMAKE_CURRENT_BINARY_DIR}/${file}" @ONLY)
    endforeach()
    target_sources(${target} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/miravel.rc")
    set_source_files_properties(
        "${CMAKE_CURRENT_BINARY_DIR}/miravel.rc"
        PROPERTIES OBJECT_DEPENDS
                   "${PROJECT_SOURCE_DIR}/resources/Miravel.ico;${CMAKE_CURRENT_BINARY_DIR}/miravel.exe.manifest")
    set_target_properties(${target} PROPERTIES WIN32_EXECUTABLE ON)
    miravel_roomy_stack(${target})
    target_link_options(${target} PRIVATE "-Wl,--high-entropy-va,--dynamicbase,--nxcompat")
    miravel_keep_symbols(${target})
endfunction()

# miravel_keep_symbols(<target>): the program or library goes out without its symbols; they are kept,
# so that scripts/windows/symbolise.py can read a crash dump.
function(miravel_keep_symbols target)
    set(folder "${CMAKE_BINARY_DIR}/symbols")
    set(symbols "${folder}/$<TARGET_FILE_NAME:${target}>.debug")
    add_custom_command(
        TARGET ${target}
        POST_BUILD
        COMMAND ${CMAKE_COMMAND} -E make_directory "${folder}"
        # Without an epoch the time of day would get into the files.
        COMMAND ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=0 ${MIRAVEL_TRIPLET}-objcopy
                --only-keep-debug "$<TARGET_FILE:${target}>" "${symbols}"
        COMMAND ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=0 ${MIRAVEL_TRIPLET}-strip --strip-all
                "$<TARGET_FILE:${target}>"
        COMMENT "Keeping the symbols of ${target} apart"
        VERBATIM)
endfunction()
