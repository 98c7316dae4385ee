# What `cmake --install` gives: headers under include/korvane (those of the seam as a component of their own), the library, a CMake package and a pkg-config file.

include(CMakePackageConfigHelpers)

set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/Korvane")

install(TARGETS korvane EXPORT KorvaneTargets
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")
install(EXPORT KorvaneTargets NAMESPACE Korvane:: DESTINATION "${package_folder}")

foreach(header IN LISTS KORVANE_PUBLISHED)
    get_filename_component(folder "${header}" DIRECTORY)
    install(FILES "${KORVANE_PUBLIC_ROOT}/${header}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${folder}")
endforeach()
foreach(header IN LISTS KORVANE_PUBLISHED_SEAM)
    get_filename_component(folder "${header}" DIRECTORY)
    install(FILES "${KORVANE_PUBLIC_ROOT}/${header}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${folder}" COMPONENT seam)
endforeach()

# What is shared finds its neighbours from where it lies, so that an installed tree can be moved.
if(BUILD_SHARED_LIBS)
    file(RELATIVE_PATH up "/${CMAKE_INSTALL_LIBDIR}" "/")
    foreach(target IN ITEMS korvane korvane-qt)
        if(TARGET ${target})
            set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${up}${CMAKE_INSTALL_LIBDIR}")
        endif()
    endforeach()
    file(RELATIVE_PATH up "/${CMAKE_INSTALL_BINDIR}" "/")
    foreach(target IN ITEMS korvane-acs korvane-challenge korvane-jose)
        if(TARGET ${target})
            set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${up}${CMAKE_INSTALL_LIBDIR}")
        endif()
    endforeach()
endif()

# The Qt filling is exported apart: applications without Qt do not need to find it.
if(KORVANE_QT)
    install(TARGETS korvane-qt EXPORT KorvaneQtTargets
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")
    install(EXPORT KorvaneQtTargets NAMESPACE Korvane:: DESTINATION "${package_folder}")
endif()

configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/KorvaneConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/KorvaneConfig.cmake" INSTALL_DESTINATION "${package_folder}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/KorvaneConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/KorvaneConfig.cmake" "${PROJECT_BINARY_DIR}/KorvaneConfigVersion.cmake"
    DESTINATION "${package_folder}")

# The prefix is told by where the file lies, so that an installed tree can be moved.
file(RELATIVE_PATH prefix_from_pkgconfig "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
configure_file("${PROJECT_SOURCE_DIR}/cmake/korvane.pc.in" "${PROJECT_BINARY_DIR}/korvane.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/korvane.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

# The resources, where the native platform looks for those of applications that bring none along.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/resources/KorvaneResources.bundle"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/korvane/Frameworks/Korvane.framework")
