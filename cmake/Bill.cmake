# Writes what a build of Korvane is made of: an SPDX document (SPDX 2.3), from the files that are linked and compiled in, from the
# list of packages that it is built with, and from what dpkg knows of each; and the licences of what is compiled in.
# usage: cmake -DVERSION=... -DDPKG_QUERY=... -DLINKED=linked.txt -DBUILT_WITH=packages.txt -DOUTPUT=FOLDER -P Bill.cmake

cmake_minimum_required(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/DebianPackages.cmake")
file(REMOVE_RECURSE "${OUTPUT}")
file(MAKE_DIRECTORY "${OUTPUT}/licenses")

# What the build uses, and what dpkg knows of all that: in "known_" and the package's name.
set(used "")
foreach(use IN ITEMS korvane tools qt compiled)
    korvane_linked_packages(${use}_packages "${LINKED}" ${use})
    list(APPEND used ${${use}_packages})
endforeach()
file(STRINGS "${BUILT_WITH}" built_with REGEX "^[^#]")
execute_process(COMMAND "${DPKG_QUERY}" -W "-f=\${Package}|\${Version}|\${Architecture}|\${source:Package}|\${Homepage}\\n"
    ${used} ${built_with} OUTPUT_VARIABLE known ERROR_QUIET)
string(REGEX MATCHALL "[^\n]+" known "${known}")
foreach(line IN LISTS known)
    string(REGEX MATCH "^[^|]+" package "${line}")
    set(known_${package} "${line}")
endforeach()

set(packages "")
set(relationships "")
set(listed "")

# describe(<package> <relationship>): an element, once for each package, and what it is to Korvane. One that is not installed,
# such as a program that came another way, is left out.
function(describe package relationship)
    if(NOT known_${package} MATCHES "^[^|]+[|]([^|]+)[|]([^|]+)[|]([^|]+)[|]([^|]*)$")
        return()
    endif()
    set(version "${CMAKE_MATCH_1}")
    set(architecture "${CMAKE_MATCH_2}")
    set(source "${CMAKE_MATCH_3}")
    set(homepage "${CMAKE_MATCH_4}")
    string(REGEX REPLACE "[^A-Za-z0-9.]" "-" id "SPDXRef-${package}")
    if(NOT package IN_LIST listed)
        if(NOT homepage)
            set(homepage NOASSERTION)
        endif()
        string(REPLACE "+" "%2B" encoded "${package}@${version}?arch=${architecture}&upstream=${source}")
        string(APPEND packages ",\n    {\"name\": \"${package}\", \"SPDXID\": \"${id}\", \"versionInfo\": \"${version}\",
     \"downloadLocation\": \"NOASSERTION\", \"homepage\": \"${homepage}\", \"filesAnalyzed\": false,
     \"licenseConcluded\": \"NOASSERTION\", \"licenseDeclared\": \"NOASSERTION\", \"copyrightText\": \"NOASSERTION\",
     \"externalRefs\": [{\"referenceCategory\": \"PACKAGE-MANAGER\", \"referenceType\": \"purl\",
       \"referenceLocator\": \"pkg:deb/debian/${encoded}\"}]}")
        set(packages "${packages}" PARENT_SCOPE)
        set(listed ${listed} "${package}" PARENT_SCOPE)
    endif()
    string(APPEND relationships ",\n    {\"spdxElementId\": \"${id}\", \"relationshipType\": \"${relationship}\",
     \"relatedSpdxElement\": \"SPDXRef-korvane\"}")
    set(relationships "${relationships}" PARENT_SCOPE)
endfunction()

foreach(package IN LISTS korvane_packages tools_packages qt_packages)
    if(package MATCHES "-dev$")
        describe("${package}" DEV_DEPENDENCY_OF)
    else()
        describe("${package}" RUNTIME_DEPENDENCY_OF)
    endif()
endforeach()
foreach(package IN LISTS compiled_packages)
    describe("${package}" DEPENDENCY_OF)
    file(COPY_FILE "/usr/share/doc/${package}/copyright" "${OUTPUT}/licenses/${package}.txt")
endforeach()
foreach(package IN LISTS built_with)
    describe("${package}" BUILD_DEPENDENCY_OF)
endforeach()

string(TIMESTAMP created "%Y-%m-%dT%H:%M:%SZ" UTC)
string(UUID unique NAMESPACE 6ba7b811-9dad-11d1-80b4-00c04fd430c8 TYPE SHA1 NAME "korvane ${VERSION} ${created} ${packages}")
file(WRITE "${OUTPUT}/korvane.spdx.json" "{
  \"spdxVersion\": \"SPDX-2.3\", \"dataLicense\": \"CC0-1.0\", \"SPDXID\": \"SPDXRef-DOCUMENT\", \"name\": \"korvane-${VERSION}\",
  \"documentNamespace\": \"urn:uuid:${unique}\",
  \"creationInfo\": {\"created\": \"${created}\", \"creators\": [\"Tool: cmake-${CMAKE_VERSION}\"]},
  \"packages\": [
    {\"name\": \"korvane\", \"SPDXID\": \"SPDXRef-korvane\", \"versionInfo\": \"${VERSION}\", \"downloadLocation\": \"NOASSERTION\",
     \"filesAnalyzed\": false, \"licenseConcluded\": \"Apache-2.0\", \"licenseDeclared\": \"Apache-2.0\",
     \"copyrightText\": \"NOASSERTION\"}${packages}
  ],
  \"relationships\": [
    {\"spdxElementId\": \"SPDXRef-DOCUMENT\", \"relationshipType\": \"DESCRIBES\", \"relatedSpdxElement\": \"SPDXRef-korvane\"}${relationships}
  ]
}
")
