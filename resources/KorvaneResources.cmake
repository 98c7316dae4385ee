# The library's resources, where programs look for them: below the folder of the application's own files.

set(korvane_resources "${PROJECT_SOURCE_DIR}/resources/KorvaneResources.bundle")
set(korvane_framework "Frameworks/Korvane.framework")

# The folder that stands for an application's in programs without one of their own, such as tests.
set(KORVANE_MAIN_BUNDLE "${PROJECT_BINARY_DIR}/resources/Application")
file(MAKE_DIRECTORY "${KORVANE_MAIN_BUNDLE}/${korvane_framework}")
file(CREATE_LINK "${korvane_resources}" "${KORVANE_MAIN_BUNDLE}/${korvane_framework}/KorvaneResources.bundle"
    SYMBOLIC)
set(KORVANE_MAIN_BUNDLE "${KORVANE_MAIN_BUNDLE}" PARENT_SCOPE)

# korvane_place_resources(<program>): gives a program the resources beside it.
function(korvane_place_resources name)
    add_custom_command(TARGET ${name} POST_BUILD
        COMMAND "${CMAKE_COMMAND}" -E make_directory "$<TARGET_FILE_DIR:${name}>/Frameworks/Korvane.framework"
        COMMAND "${CMAKE_COMMAND}" -E create_symlink "${PROJECT_SOURCE_DIR}/resources/KorvaneResources.bundle"
            "$<TARGET_FILE_DIR:${name}>/Frameworks/Korvane.framework/KorvaneResources.bundle"
        VERBATIM)
endfunction()
