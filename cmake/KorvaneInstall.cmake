# What `cmake --install` gives: headers under include/korvane (those of the seam as a component of their own), the libraries, a
# CMake package, files for pkg-config and the resources. Tools and the QML module install themselves.

include(CMakePackageConfigHelpers)

set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/Korvane")

# korvane_install_library(<target> <export> <component of the runtime> <component of the rest>)
function(korvane_install_library target export runtime development)
    install(TARGETS ${target} EXPORT ${export}
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT ${development}
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT ${runtime} NAMELINK_COMPONENT ${development})
    install(EXPORT ${export} NAMESPACE Korvane:: DESTINATION "${package_folder}" COMPONENT ${development})
endfunction()

# korvane_install_headers(<component> <header>...)
function(korvane_install_headers component)
    foreach(header IN LISTS ARGN)
        get_filename_component(folder "${header}" DIRECTORY)
        install(FILES "${KORVANE_PUBLIC_ROOT}/${header}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${folder}" COMPONENT ${component})
    endforeach()
endfunction()

# korvane_install_pkgconfig(<name> <component>): the prefix is told by where the file lies, so that an installed tree can be moved.
file(RELATIVE_PATH prefix_from_pkgconfig "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
function(korvane_install_pkgconfig name component)
    configure_file("${PROJECT_SOURCE_DIR}/cmake/${name}.pc.in" "${PROJECT_BINARY_DIR}/${name}.pc" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/${name}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT ${component})
endfunction()

# What a static library needs a program must name; a shared one has it. curl is linked as the shared library that it is: its own
# static requirements are many, and none is ours. A program in C does not know the library of C++.
if(BUILD_SHARED_LIBS)
    set(pkgconfig_private .private)
else()
    set(pkgconfig_static " -lcurl -lstdc++ -lm")
endif()
korvane_install_library(korvane KorvaneTargets library development)
korvane_install_headers(development ${KORVANE_PUBLISHED})
korvane_install_headers(seam ${KORVANE_PUBLISHED_SEAM})
korvane_install_pkgconfig(korvane development)

# The Qt filling is exported apart: applications without Qt do not need to find it.
if(KORVANE_QT)
    if(KORVANE_WEB)
        set(pkgconfig_web ", Qt6WebEngineQuick")
    endif()
    if(NOT BUILD_SHARED_LIBS)
        set(pkgconfig_korvane "korvane, ")
    endif()
    korvane_install_library(korvane-qt KorvaneQtTargets qtlibrary qt)
    korvane_install_headers(qt ${KORVANE_PUBLISHED_QT})
    korvane_install_pkgconfig(korvane-qt qt)
endif()

# Whole programs to begin with, which whoever has the packages copies.
set(examples "${CMAKE_INSTALL_DATADIR}/doc/korvane/examples")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/payment" "${PROJECT_SOURCE_DIR}/examples/c" DESTINATION "${examples}"
    PATTERN build EXCLUDE)
if(KORVANE_JAVA)
    install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/java" DESTINATION "${examples}" COMPONENT java)
endif()
if(KORVANE_QT)
    install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/shop" DESTINATION "${examples}" COMPONENT qt PATTERN build EXCLUDE)
endif()

# What is shared finds its neighbours from where it lies, so that an installed tree can be moved. The tools hold the library.
if(BUILD_SHARED_LIBS)
    foreach(target IN ITEMS korvane korvane-qt)
        if(TARGET ${target})
            set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN")
        endif()
    endforeach()
endif()

configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/KorvaneConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/KorvaneConfig.cmake" INSTALL_DESTINATION "${package_folder}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/KorvaneConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/KorvaneConfig.cmake" "${PROJECT_BINARY_DIR}/KorvaneConfigVersion.cmake"
    DESTINATION "${package_folder}")

# The resources, where the native platform looks for those of applications that bring none along.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/resources/KorvaneResources.bundle"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/korvane/Frameworks/Korvane.framework" COMPONENT resources)
install(FILES "${PROJECT_SOURCE_DIR}/resources/theme.schema.json" DESTINATION "${CMAKE_INSTALL_DATADIR}/korvane"
    COMPONENT resources)
