# The public face: which headers an application finds, and under which names. The tree writes "Sdk/Service/ThreeDS2Service.h";
# outside it is <korvane/ThreeDS2Service.h>, and what comes from the seam is <korvane/platform/Bytes.h>. The headers are made from
# the tree's own whenever the build is configured, with all that they include.

# What an application includes; <korvane/korvane.h> includes all of these.
set(KORVANE_APPLICATION_HEADERS
    Platform/Logger.h
    Platform/Headless/HeadlessPlatform.h
    Sdk/Events/SdkError.h
    Sdk/Service/ThreeDS2Service.h
    Ui/Customisation/Theme.h
    Ui/Customisation/UiCustomization.h
    Ui/Customisation/UiCustomizationConstraints.h
    Ui/Screens/PreventScreenRecording.h)
if(KORVANE_QT)
    set(KORVANE_QT_HEADERS Platform/Qt/QtPlatform.h)
endif()

# What those include who fill the seam, or draw the screens.
set(KORVANE_SEAM_HEADERS
    Platform/NotificationCenter.h
    Platform/Hosted/HostedPlatform.h
    Platform/Native/NativeDispatch.h
    Platform/View/TextMeasurer.h
    Platform/View/UIApplication.h
    Platform/View/UIActivityIndicatorView.h
    Platform/View/UIImageView.h
    Platform/View/UIScrollView.h
    Platform/View/UITableView.h
    Platform/View/UITextField.h
    Platform/View/UITextView.h
    Platform/View/UIWindow.h
    Platform/View/WKWebView.h)

# korvane_public_name(<variable> <header>): under which name it is installed.
function(korvane_public_name variable header)
    get_filename_component(name "${header}" NAME)
    if(header MATCHES "^Platform/" AND NOT header IN_LIST KORVANE_APPLICATION_HEADERS AND NOT header IN_LIST KORVANE_QT_HEADERS)
        set(name "platform/${name}")
    endif()
    set(${variable} "korvane/${name}" PARENT_SCOPE)
endfunction()

# korvane_publish(<variable> <root> <header>...): writes the headers, and all of the tree that they include, under the root. The
# variable names what was written.
function(korvane_publish variable root)
    set(waiting ${ARGN})
    set(done "")
    set(written "")
    while(waiting)
        list(POP_FRONT waiting header)
        if(header IN_LIST done)
            continue()
        endif()
        list(APPEND done "${header}")
        set_property(DIRECTORY "${PROJECT_SOURCE_DIR}" APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${header}")
        file(READ "${PROJECT_SOURCE_DIR}/${header}" text)
        string(REGEX MATCHALL "#include \"[^\"]+\"" includes "${text}")
        foreach(include IN LISTS includes)
            string(REGEX REPLACE "#include \"(.*)\"" "\\1" included "${include}")
            korvane_public_name(name "${included}")
            string(REPLACE "${include}" "#include <${name}>" text "${text}")
            list(APPEND waiting "${included}")
        endforeach()
        korvane_public_name(name "${header}")
        if("${name}" IN_LIST written)
            message(FATAL_ERROR "Two public headers are called ${name}.")
        endif()
        file(CONFIGURE OUTPUT "${root}/${name}" CONTENT "${text}" @ONLY)
        list(APPEND written "${name}")
    endwhile()
    set(${variable} "${written}" PARENT_SCOPE)
endfunction()

# What is published lies apart for each component: an application's headers, those of Qt, and those of the seam.
set(KORVANE_PUBLIC_ROOT "${PROJECT_BINARY_DIR}/include")
korvane_publish(KORVANE_PUBLISHED "${KORVANE_PUBLIC_ROOT}" ${KORVANE_APPLICATION_HEADERS})
korvane_publish(KORVANE_PUBLISHED_QT "${KORVANE_PUBLIC_ROOT}" ${KORVANE_APPLICATION_HEADERS} ${KORVANE_QT_HEADERS})
korvane_publish(published_with_seam "${KORVANE_PUBLIC_ROOT}"
    ${KORVANE_APPLICATION_HEADERS} ${KORVANE_QT_HEADERS} ${KORVANE_SEAM_HEADERS})
set(KORVANE_PUBLISHED_SEAM ${published_with_seam})
list(REMOVE_ITEM KORVANE_PUBLISHED_SEAM ${KORVANE_PUBLISHED_QT})
list(REMOVE_ITEM KORVANE_PUBLISHED_QT ${KORVANE_PUBLISHED})

set(umbrella "#pragma once\n\n/// All that an application without Qt needs.\n\n#include <korvane/Version.h>\n")
foreach(header IN LISTS KORVANE_APPLICATION_HEADERS)
    korvane_public_name(name "${header}")
    string(APPEND umbrella "#include <${name}>\n")
endforeach()
file(CONFIGURE OUTPUT "${KORVANE_PUBLIC_ROOT}/korvane/korvane.h" CONTENT "${umbrella}" @ONLY)
list(APPEND KORVANE_PUBLISHED korvane/korvane.h)

configure_file("${CMAKE_CURRENT_LIST_DIR}/Version.h.in" "${KORVANE_PUBLIC_ROOT}/korvane/Version.h" @ONLY)
list(APPEND KORVANE_PUBLISHED korvane/Version.h)

# The face for C is apart: it stands alone, and applications in C++ have no need of it.
korvane_publish(published_for_c "${KORVANE_PUBLIC_ROOT}" C/korvane_c.h)
list(APPEND KORVANE_PUBLISHED ${published_for_c})
