# Gives the target PROGRAM its icon, its version and the manifest.
function(varlune_resources program)
    configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/program.rc.in ${PROJECT_BINARY_DIR}/${program}.rc @ONLY)
    target_include_directories(${program} PRIVATE ${PROJECT_SOURCE_DIR}/packaging/windows)
    target_sources(${program} PRIVATE ${PROJECT_BINARY_DIR}/${program}.rc)
endfunction()
