# An install prefix is made, and an application is configured and built against it, by CMake and by pkg-config.

set(prefix "${CMAKE_BINARY_DIR}/package/prefix")
set(consumer "${PROJECT_SOURCE_DIR}/tests/package")

add_test(NAME package.install COMMAND "${CMAKE_COMMAND}" --install "${CMAKE_BINARY_DIR}" --prefix "${prefix}")
set_tests_properties(package.install PROPERTIES FIXTURES_SETUP package)

add_test(NAME package.cmake
    COMMAND "${CMAKE_CTEST_COMMAND}" --build-and-test "${consumer}" "${CMAKE_BINARY_DIR}/package/consumer"
        --build-generator Ninja --build-options "-DCMAKE_PREFIX_PATH=${prefix}"
        "-DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}" --test-command sh -c "./consumer && ./filling")

set(libraries "${prefix}/${CMAKE_INSTALL_LIBDIR}")
set(pkg_config "PKG_CONFIG_PATH=${libraries}/pkgconfig pkg-config --cflags --libs korvane")
set(program "${CMAKE_BINARY_DIR}/package/pkg-config-consumer")
add_test(NAME package.pkgConfig
    COMMAND sh -c
        "'${CMAKE_CXX_COMPILER}' -std=c++20 '${consumer}/consumer.cpp' $(${pkg_config}) -o '${program}' && \
            LD_LIBRARY_PATH='${libraries}' '${program}'")

set_tests_properties(package.cmake package.pkgConfig PROPERTIES FIXTURES_REQUIRED package)

if(KORVANE_TOOLS)
    add_test(NAME package.pages
        COMMAND sh -c "for tool in acs challenge jose $<$<TARGET_EXISTS:korvane-screen>:screen>; do \
            test -s '${prefix}/${CMAKE_INSTALL_MANDIR}/man1/korvane-'$tool.1 && \
            test -s '${prefix}/${CMAKE_INSTALL_DATADIR}/bash-completion/completions/korvane-'$tool || exit 1; done")
    set_tests_properties(package.pages PROPERTIES FIXTURES_REQUIRED package)
endif()

# The bill of materials names every library that the tools need, but for the compiler's own.
if(DPKG_QUERY)
    add_test(NAME package.bill COMMAND "${NODE}" "${consumer}/bill.mjs" "${prefix}/${CMAKE_INSTALL_DATADIR}/doc/korvane/korvane.spdx.json"
        "${PROJECT_VERSION}" "$<TARGET_FILE:korvane-acs>" "$<TARGET_FILE:korvane-challenge>")
    set_tests_properties(package.bill PROPERTIES FIXTURES_REQUIRED package)
endif()

# Within another project: what is there, and that nothing of it is installed. To build it all once more would prove no more.
set(parent "${CMAKE_BINARY_DIR}/package/parent")
add_test(NAME package.subproject
    COMMAND sh -c "rm -rf '${parent}' && '${CMAKE_COMMAND}' -S '${consumer}/subproject' -B '${parent}' -G Ninja \
        -DKORVANE_SOURCE='${PROJECT_SOURCE_DIR}' -DCMAKE_CXX_COMPILER='${CMAKE_CXX_COMPILER}' && \
        '${CMAKE_COMMAND}' --install '${parent}' --prefix '${parent}/prefix' && test ! -e '${parent}/prefix'")

# The same objects as a shared library: what is public can be linked, and nothing else.
add_library(korvane_shared SHARED EXCLUDE_FROM_ALL)
korvane_join_layers(korvane_shared ${KORVANE_LAYERS})
set(shared_program "${CMAKE_BINARY_DIR}/package/shared")
add_test(NAME package.shared.build
    COMMAND "${CMAKE_COMMAND}" --build "${CMAKE_BINARY_DIR}" --target korvane_shared)
set_tests_properties(package.shared.build PROPERTIES FIXTURES_SETUP shared TIMEOUT 300)
foreach(source IN ITEMS consumer filling)
    add_test(NAME package.shared.${source}
        COMMAND sh -c
            "'${CMAKE_CXX_COMPILER}' -std=c++20 -I'${KORVANE_PUBLIC_ROOT}' '${consumer}/${source}.cpp' \
                '$<TARGET_FILE:korvane_shared>' -Wl,-rpath,'$<TARGET_FILE_DIR:korvane_shared>' \
                -o '${shared_program}-${source}' && '${shared_program}-${source}'")
endforeach()
add_test(NAME package.shared.c
    COMMAND sh -c
        "'${CMAKE_CXX_COMPILER}' -x c -std=c99 -pedantic-errors -Wall -Wextra -Werror -I'${KORVANE_PUBLIC_ROOT}' \
            '${PROJECT_SOURCE_DIR}/examples/c/payment.c' -x none '$<TARGET_FILE:korvane_shared>' \
            -Wl,-rpath,'$<TARGET_FILE_DIR:korvane_shared>' -o '${shared_program}-c' && '${shared_program}-c' 2>&1 | grep -q AUTHORITIES")
add_test(NAME package.shared.hidesTheRest
    COMMAND sh -c "nm -DC --defined-only '$<TARGET_FILE:korvane_shared>' >'${shared_program}.symbols' && \
        grep -q 'korvane::ThreeDS2Service::' '${shared_program}.symbols' && \
        grep -q 'korvane_release@@KORVANE_0' '${shared_program}.symbols' && \
        ! grep -E 'korvane::(JWE|KeysContainer|ChallengeFlow|Exchange|VCFactory|KeyboardLayout)|nlohmann|asio::' \
            '${shared_program}.symbols'")
set_tests_properties(package.shared.consumer package.shared.filling package.shared.c package.shared.hidesTheRest PROPERTIES FIXTURES_REQUIRED shared)

# Qt's linter knows what a host has, and what it has not.
if(KORVANE_QT)
    set(lint "'${QT6_INSTALL_PREFIX}/${QT6_INSTALL_BINS}/qmllint' -I '${libraries}/qt6/qml'")
    set(wrong "${CMAKE_BINARY_DIR}/package/Wrong.qml")
    add_test(NAME package.qmllint
        COMMAND sh -c "cd '${PROJECT_SOURCE_DIR}/examples/shop' && ${lint} Shop.qml && sed s/onActive/onBusy/ Shop.qml >'${wrong}' && ! ${lint} '${wrong}'")
    set_tests_properties(package.qmllint PROPERTIES FIXTURES_REQUIRED package)
endif()

# The program of the README: the scene is loaded, and a transaction is made.
if(KORVANE_QT)
    add_test(NAME package.qt
        COMMAND "${CMAKE_CTEST_COMMAND}" --build-and-test "${consumer}/qt" "${CMAKE_BINARY_DIR}/package/qt"
            --build-generator Ninja --build-options "-DCMAKE_PREFIX_PATH=${prefix}"
            "-DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}" --test-command consumer)
    set_tests_properties(package.qt PROPERTIES FIXTURES_REQUIRED package TIMEOUT 300
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QT_QUICK_BACKEND=software;QTWEBENGINE_DISABLE_SANDBOX=1")
endif()
