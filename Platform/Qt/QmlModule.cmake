# The module `Korvane` as Qt's tools read it: what KorvaneHost has, taken from its header. At run time the type is the platform's
# to register, so that the module's folder has no plugin.

set(module "${CMAKE_CURRENT_BINARY_DIR}/qml/Korvane")
set(described "${CMAKE_CURRENT_BINARY_DIR}/KorvaneHost.moc.json")
set(metatypes "${CMAKE_CURRENT_BINARY_DIR}/korvane-qt.metatypes.json")
get_target_property(qt_quick Qt6::Quick LOCATION)
get_filename_component(qt_libraries "${qt_quick}" DIRECTORY)
file(GLOB foreign_metatypes "${qt_libraries}/metatypes/qt6quick_*metatypes.json" "${qt_libraries}/metatypes/qt6qml_*metatypes.json"
    "${qt_libraries}/metatypes/qt6core_*metatypes.json")
list(JOIN foreign_metatypes "," foreign_metatypes)

add_custom_command(OUTPUT "${module}/korvane.qmltypes"
    COMMAND Qt6::moc --output-json "-I$<JOIN:$<TARGET_PROPERTY:Qt6::Quick,INTERFACE_INCLUDE_DIRECTORIES>,;-I>"
        "-I$<JOIN:$<TARGET_PROPERTY:Qt6::Qml,INTERFACE_INCLUDE_DIRECTORIES>,;-I>"
        "-I$<JOIN:$<TARGET_PROPERTY:Qt6::Core,INTERFACE_INCLUDE_DIRECTORIES>,;-I>"
        "${CMAKE_CURRENT_SOURCE_DIR}/KorvaneHost.h" -o KorvaneHost.moc
    COMMAND Qt6::moc --collect-json -o "${metatypes}" "${described}"
    COMMAND "${CMAKE_COMMAND}" -E make_directory "${module}"
    COMMAND Qt6::qmltyperegistrar "--generate-qmltypes=${module}/korvane.qmltypes" --import-name=Korvane --major-version=1
        --minor-version=0 "--foreign-types=${foreign_metatypes}" -o KorvaneTypes.cpp "${metatypes}"
    DEPENDS KorvaneHost.h
    COMMAND_EXPAND_LISTS VERBATIM)
file(CONFIGURE OUTPUT "${module}/qmldir" CONTENT "module Korvane\ntypeinfo korvane.qmltypes\ndepends QtQuick\n")
add_custom_target(korvane_qml_module ALL DEPENDS "${module}/korvane.qmltypes")
if(KORVANE_INSTALL)
    install(FILES "${module}/qmldir" "${module}/korvane.qmltypes" DESTINATION "${CMAKE_INSTALL_LIBDIR}/qt6/qml/Korvane" COMPONENT qt)
endif()
