# What must hold of the source tree itself.

# Every header compiles alone, and twice.
file(GLOB_RECURSE headers RELATIVE "${PROJECT_SOURCE_DIR}" CONFIGURE_DEPENDS
    "${PROJECT_SOURCE_DIR}/Platform/*.h" "${PROJECT_SOURCE_DIR}/Crypt/*.h" "${PROJECT_SOURCE_DIR}/Sdk/*.h"
    "${PROJECT_SOURCE_DIR}/keyboard/*.h" "${PROJECT_SOURCE_DIR}/Ui/*.h" "${PROJECT_SOURCE_DIR}/Input/*.h" "${PROJECT_SOURCE_DIR}/Cardholder/*.h"
    "${PROJECT_SOURCE_DIR}/C/*.h"
    "${PROJECT_SOURCE_DIR}/tests/support/*.h")
if(NOT KORVANE_QT)
    list(FILTER headers EXCLUDE REGEX "^Platform/Qt/")
endif()
set(sources)
foreach(header IN LISTS headers)
    set(source "${CMAKE_CURRENT_BINARY_DIR}/headers/${header}.cpp")
    file(CONFIGURE OUTPUT "${source}" CONTENT "#include \"${header}\"\n#include \"${header}\"\n" @ONLY)
    list(APPEND sources "${source}")
endforeach()
add_library(headers_alone OBJECT EXCLUDE_FROM_ALL ${sources})
target_link_libraries(headers_alone PRIVATE korvane_internals korvane_flags OpenSSL::Crypto)
if(KORVANE_QT)
    target_link_libraries(headers_alone PRIVATE korvane-qt $<TARGET_NAME_IF_EXISTS:Qt6::WebEngineQuick>)
endif()
target_compile_options(headers_alone PRIVATE -O0 -g0)
add_test(NAME tree.headersCompileAlone
    COMMAND "${CMAKE_COMMAND}" --build "${CMAKE_BINARY_DIR}" --target headers_alone)
set_tests_properties(tree.headersCompileAlone PROPERTIES RUN_SERIAL ON TIMEOUT 900 LABELS long)

find_program(NODE node REQUIRED)
add_test(NAME tree.readmeShowsWhatIsCompiled
    COMMAND "${NODE}" "${CMAKE_CURRENT_SOURCE_DIR}/tree/readme.mjs"
        "${PROJECT_SOURCE_DIR}/README.md" "${CMAKE_CURRENT_SOURCE_DIR}/package/qt/consumer.cpp")
add_test(NAME tree.bindingsShowWhatIsCompiled
    COMMAND "${NODE}" "${CMAKE_CURRENT_SOURCE_DIR}/tree/readme.mjs"
        "${PROJECT_SOURCE_DIR}/docs/bindings.md" "${PROJECT_SOURCE_DIR}/examples/java/payment/Payment.java")
add_test(NAME tree.includesKeepTheirFences
    COMMAND "${NODE}" "${CMAKE_CURRENT_SOURCE_DIR}/tree/fences.mjs" "${PROJECT_SOURCE_DIR}")

# Sources look as .clang-format says. Others than the version that the machines of the project have may say otherwise.
find_program(CLANG_FORMAT NAMES clang-format-14 clang-format REQUIRED)
add_test(NAME tree.isFormatted
    COMMAND sh -c "find Platform Crypt Sdk keyboard Ui Input Cardholder C java tools examples tests fuzz bench -name '*.h' -o -name '*.cpp' |
        xargs '${CLANG_FORMAT}' --dry-run -Werror"
    WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}")
