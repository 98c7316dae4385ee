# An install prefix is made, and an application is configured and built against it, by CMake and by pkg-config.

set(prefix "${CMAKE_BINARY_DIR}/package/prefix")
set(consumer "${PROJECT_SOURCE_DIR}/tests/package")

add_test(NAME package.install COMMAND "${CMAKE_COMMAND}" --install "${CMAKE_BINARY_DIR}" --prefix "${prefix}")
set_tests_properties(package.install PROPERTIES FIXTURES_SETUP package)

add_test(NAME package.cmake
    COMMAND "${CMAKE_CTEST_COMMAND}" --build-and-test "${consumer}" "${CMAKE_BINARY_DIR}/package/consumer"
        --build-generator Ninja --build-options "-DCMAKE_PREFIX_PATH=${prefix}"
        "-DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}" --test-command consumer)

set(pkg_config "PKG_CONFIG_PATH=${prefix}/${CMAKE_INSTALL_LIBDIR}/pkgconfig pkg-config --static --cflags --libs korvane")
set(program "${CMAKE_BINARY_DIR}/package/pkg-config-consumer")
add_test(NAME package.pkgConfig
    COMMAND sh -c
        "'${CMAKE_CXX_COMPILER}' -std=c++20 '${consumer}/consumer.cpp' $(${pkg_config}) -o '${program}' && '${program}'")

set_tests_properties(package.cmake package.pkgConfig PROPERTIES FIXTURES_REQUIRED package)

# The program of the README: the scene is loaded, and a transaction is made.
if(KORVANE_QT)
    add_test(NAME package.qt
        COMMAND "${CMAKE_CTEST_COMMAND}" --build-and-test "${consumer}/qt" "${CMAKE_BINARY_DIR}/package/qt"
            --build-generator Ninja --build-options "-DCMAKE_PREFIX_PATH=${prefix}"
            "-DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}" --test-command consumer)
    set_tests_properties(package.qt PROPERTIES FIXTURES_REQUIRED package TIMEOUT 300
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QT_QUICK_BACKEND=software;QTWEBENGINE_DISABLE_SANDBOX=1")
endif()
