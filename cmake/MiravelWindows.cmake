# What the program needs on Windows beside its sources.

# Reserved, not used: guard messages may nest event loops, some KiB of stack each.
set(MIRAVEL_STACK_BYTES 16777216)

# miravel_windows_program(<target>): no console, icon, version and manifest, a roomy stack.
function(miravel_windows_program target)
    enable_language(RC)
    configure_file("${PROJECT_SOURCE_DIR}/packaging/windows/miravel.rc.in"
                   "${CMAKE_CURRENT_BINARY_DIR}/miravel.rc" @ONLY)
    target_sources(${target} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/miravel.rc")
    set_source_files_properties(
        "${CMAKE_CURRENT_BINARY_DIR}/miravel.rc"
        PROPERTIES OBJECT_DEPENDS
                   "${PROJECT_SOURCE_DIR}/resources/Miravel.ico;${PROJECT_SOURCE_DIR}/packaging/windows/miravel.exe.manifest")
    set_target_properties(${target} PROPERTIES WIN32_EXECUTABLE ON)
    target_link_options(${target} PRIVATE "-Wl,--stack,${MIRAVEL_STACK_BYTES}")
endfunction()
