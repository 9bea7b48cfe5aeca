# What `cmake --install` lays out and what CPack packs: the program folder (the executable with
# the catalogue and the manual beside it), and on Linux the command, the desktop entry, AppStream
# metainfo and icons; on macOS an application bundle.

set(QUILLMARK_APP_ID "org.example.quillmark" CACHE STRING
    "Reverse-DNS id of the desktop entry, the AppStream component and the macOS bundle")
set(QUILLMARK_HOMEPAGE "https://example.org/quillmark" CACHE STRING
    "Home page named by the package and the metainfo; its screenshots/ holds the metainfo's picture")
set(QUILLMARK_MAINTAINER "Quillmark developers <quillmark@example.org>" CACHE STRING "Package maintainer")
set(QUILLMARK_INSTALL_PROGRAM_DIR "lib/quillmark" CACHE STRING
    "Program folder below the install prefix: the executable with bin/base_ini.xml and Manual.pdf")

set(QMK_PACKAGE_SRC ${CMAKE_SOURCE_DIR}/resources/package)
set(QMK_PACKAGE_DIR ${CMAKE_BINARY_DIR}/package)
# The gallery picture the README shows is the metainfo's screenshot.
set(QMK_SCREENSHOT quillmark-window.png)
string(TIMESTAMP QMK_RELEASE_DATE "%Y-%m-%d" UTC)
string(TIMESTAMP QMK_YEAR "%Y" UTC)
string(TIMESTAMP QMK_CHANGELOG_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
foreach(template quillmark.desktop quillmark.metainfo.xml Info.plist copyright changelog)
    string(REPLACE "quillmark." "${QUILLMARK_APP_ID}." generated ${template})
    configure_file(${QMK_PACKAGE_SRC}/${template}.in ${QMK_PACKAGE_DIR}/${generated} @ONLY)
endforeach()

# --- icons, drawn from the SVG source by the project's own renderer -----------------------------
set(QMK_ICON_SVG ${CMAKE_SOURCE_DIR}/resources/images/src/Quillmark.ico.svg)
set(QMK_ICON_DIR ${CMAKE_BINARY_DIR}/icons)
set(QMK_HICOLOR_SIZES 16 22 24 32 48 64 128 256 512)
set(QMK_ICNS_SIZES 16 32 48 128 256 512 1024)
set(QMK_ICON_SIZES ${QMK_HICOLOR_SIZES} 1024)
set(QMK_ICON_PNGS)
foreach(size ${QMK_ICON_SIZES})
    list(APPEND QMK_ICON_PNGS ${QMK_ICON_DIR}/${size}.png)
endforeach()
add_custom_command(OUTPUT ${QMK_ICON_PNGS}
    COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen ASAN_OPTIONS=detect_leaks=0
            $<TARGET_FILE:render_images> --icon ${QMK_ICON_SVG} ${QMK_ICON_DIR} ${QMK_ICON_SIZES}
    DEPENDS render_images ${QMK_ICON_SVG}
    COMMENT "Drawing the program's icons")

# The bundle's icon file. png2icns (icnsutils) on Linux, where a test checks it; a Mac without it
# uses the system's iconutil.
find_program(QMK_PNG2ICNS png2icns)
find_program(QMK_ICONUTIL iconutil)
set(QMK_ICNS ${QMK_ICON_DIR}/Quillmark.icns)
set(QMK_ICNS_PNGS)
foreach(size ${QMK_ICNS_SIZES})
    list(APPEND QMK_ICNS_PNGS ${QMK_ICON_DIR}/${size}.png)
endforeach()
if(QMK_PNG2ICNS)
    add_custom_command(OUTPUT ${QMK_ICNS}
        COMMAND ${QMK_PNG2ICNS} ${QMK_ICNS} ${QMK_ICNS_PNGS} > /dev/null
        DEPENDS ${QMK_ICNS_PNGS}
        COMMENT "Packing the macOS icon")
elseif(QMK_ICONUTIL)
    set(iconset ${QMK_ICON_DIR}/Quillmark.iconset)
    set(copies)
    foreach(size 16 32 128 256 512)
        math(EXPR double "${size} * 2")
        list(APPEND copies
             COMMAND ${CMAKE_COMMAND} -E copy ${QMK_ICON_DIR}/${size}.png ${iconset}/icon_${size}x${size}.png
             COMMAND ${CMAKE_COMMAND} -E copy ${QMK_ICON_DIR}/${double}.png ${iconset}/icon_${size}x${size}@2x.png)
    endforeach()
    add_custom_command(OUTPUT ${QMK_ICNS}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${iconset}
        ${copies}
        COMMAND ${QMK_ICONUTIL} -c icns -o ${QMK_ICNS} ${iconset}
        DEPENDS ${QMK_ICON_PNGS}
        COMMENT "Packing the macOS icon")
else()
    set(QMK_ICNS)
    message(STATUS "Neither png2icns (icnsutils) nor iconutil found: no macOS icon file")
endif()
add_custom_target(quillmark_icons ALL DEPENDS ${QMK_ICON_PNGS} ${QMK_ICNS})

# The package test packs this build and runs a probe from the installed program folder.
if(TARGET TestPackage)
    target_compile_definitions(TestPackage PRIVATE QMK_BINARY_DIR="${CMAKE_BINARY_DIR}"
        QMK_SOURCE_DIR="${CMAKE_SOURCE_DIR}" QMK_CPACK="${CMAKE_CPACK_COMMAND}" QMK_CMAKE="${CMAKE_COMMAND}"
        QMK_APP_ID="${QUILLMARK_APP_ID}" $<$<BOOL:${QUILLMARK_SANITIZE}>:QMK_SANITIZED>)
    add_dependencies(TestPackage Quillmark probe_update manual quillmark_icons quillmark_docs)
endif()

# --- install ----------------------------------------------------------------------------------
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
if(APPLE)
    # What is not code goes to Contents/Resources, so that the bundle can be signed; the program
    # looks there when it runs from a bundle.
    set(shipped ${CMAKE_BINARY_DIR}/bin/base_ini.xml ${CMAKE_BINARY_DIR}/Manual.pdf ${QMK_ICNS})
    target_sources(Quillmark PRIVATE ${shipped})
    set_source_files_properties(${CMAKE_BINARY_DIR}/bin/base_ini.xml PROPERTIES MACOSX_PACKAGE_LOCATION Resources/bin)
    set_source_files_properties(${CMAKE_BINARY_DIR}/Manual.pdf ${QMK_ICNS} PROPERTIES
        MACOSX_PACKAGE_LOCATION Resources GENERATED TRUE)
    set_target_properties(Quillmark PROPERTIES
        MACOSX_BUNDLE TRUE
        MACOSX_BUNDLE_INFO_PLIST ${QMK_PACKAGE_DIR}/Info.plist)
    add_dependencies(Quillmark manual quillmark_icons)
    install(TARGETS Quillmark BUNDLE DESTINATION .)
    return()
endif()

include(GNUInstallDirs)
set(program_dir ${QUILLMARK_INSTALL_PROGRAM_DIR})
install(TARGETS Quillmark RUNTIME DESTINATION ${program_dir})
install(FILES ${QMK_BIN_OUTPUTS} DESTINATION ${program_dir}/bin)
install(FILES ${CMAKE_BINARY_DIR}/Manual.pdf DESTINATION ${program_dir})
# The command on the search path is a relative link into the program folder; the program finds
# its folder through the link.
file(RELATIVE_PATH link_target /prefix/${CMAKE_INSTALL_BINDIR} /prefix/${program_dir}/Quillmark)
file(CREATE_LINK ${link_target} ${QMK_PACKAGE_DIR}/quillmark SYMBOLIC)
install(FILES ${QMK_PACKAGE_DIR}/quillmark DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${QMK_PACKAGE_DIR}/${QUILLMARK_APP_ID}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${QMK_PACKAGE_DIR}/${QUILLMARK_APP_ID}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
foreach(size ${QMK_HICOLOR_SIZES})
    install(FILES ${QMK_ICON_DIR}/${size}.png
            DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps
            RENAME ${QUILLMARK_APP_ID}.png)
endforeach()
# Debian wants the copyright and a compressed changelog in the package's documentation folder, and
# a compressed manual page for the command.
add_custom_command(OUTPUT ${QMK_PACKAGE_DIR}/changelog.gz ${QMK_PACKAGE_DIR}/quillmark.1.gz
    COMMAND gzip -9nc ${QMK_PACKAGE_DIR}/changelog > ${QMK_PACKAGE_DIR}/changelog.gz
    COMMAND gzip -9nc ${QMK_PACKAGE_SRC}/quillmark.1 > ${QMK_PACKAGE_DIR}/quillmark.1.gz
    DEPENDS ${QMK_PACKAGE_DIR}/changelog ${QMK_PACKAGE_SRC}/quillmark.1)
add_custom_target(quillmark_docs ALL DEPENDS ${QMK_PACKAGE_DIR}/changelog.gz ${QMK_PACKAGE_DIR}/quillmark.1.gz)
install(FILES ${QMK_PACKAGE_DIR}/copyright ${QMK_PACKAGE_DIR}/changelog.gz
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/quillmark)
install(FILES ${QMK_PACKAGE_DIR}/quillmark.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

# --- the .deb -----------------------------------------------------------------------------------
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quillmark)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT ${QUILLMARK_MAINTAINER})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "navigation data updater for flight-simulator add-ons")
set(CPACK_PACKAGE_DESCRIPTION [[
Quillmark finds the newest AIRAC cycle on its server, downloads the
navigation data that the selected add-ons need and installs it into each
add-on's folders, keeping a backup of every file it replaces. The backups
can be restored or removed later, and the whole local cycle can be saved
to one archive and loaded back.]])
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${QUILLMARK_HOMEPAGE})
# The Qt libraries come from the linked libraries; the tools it starts are named.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "unzip, zip")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils, qttranslations5-l10n")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
