# What an installation holds. Everything is found from where the program lies, so a tree may be
# moved as a whole afterwards.
include(GNUInstallDirs)
set(share "${CMAKE_INSTALL_DATADIR}")

install(TARGETS quibbits quibbits-sim quibbits-defaults quibbits-atelier
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
# Not for a user's own hands: the program that shows the settings, and what sets text.
install(TARGETS quibbits-settings RUNTIME DESTINATION libexec/quibbits)
install(TARGETS quibbits-text LIBRARY DESTINATION libexec/quibbits
  PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
install(DIRECTORY "${QUIBBITS_SHEETS_DIR}/" DESTINATION "${share}/quibbits/sheets")

set(packaging "${PROJECT_SOURCE_DIR}/packaging")
install(FILES "${packaging}/quibbits.desktop" DESTINATION "${share}/applications")
set(icons "${CMAKE_BINARY_DIR}/icons")
set(icon_theme "${share}/icons/hicolor")
foreach(size 16 22 24 32 48 64 128 256)
  install(FILES "${icons}/quibbits-${size}.png" RENAME quibbits.png
    DESTINATION "${icon_theme}/${size}x${size}/apps")
endforeach()
foreach(size 16 22)
  install(FILES "${icons}/quibbits-symbolic-${size}.png" RENAME quibbits-symbolic.png
    DESTINATION "${icon_theme}/${size}x${size}/status")
endforeach()

# Screenshots are named by where they can be fetched; without such a place there are none.
set(QUIBBITS_SCREENSHOTS_AT "" CACHE STRING "The web address of the folder docs, for software centres")
set(QUIBBITS_SCREENSHOTS "")
if(QUIBBITS_SCREENSHOTS_AT)
  set(QUIBBITS_SCREENSHOTS "<screenshots>
    <screenshot type=\"default\">
      <caption>A creature on the desktop, and the dial with the party</caption>
      <image>${QUIBBITS_SCREENSHOTS_AT}/desktop.png</image>
    </screenshot>
    <screenshot>
      <caption>The settings: a creature's guide</caption>
      <image>${QUIBBITS_SCREENSHOTS_AT}/settings.png</image>
    </screenshot>
  </screenshots>")
endif()
set(QUIBBITS_RELEASED "2026-11-23")
set(metainfo "${CMAKE_BINARY_DIR}/share/com.quibbits.Quibbits.metainfo.xml")
configure_file("${packaging}/com.quibbits.Quibbits.metainfo.xml.in" "${metainfo}" @ONLY)
install(FILES "${metainfo}" DESTINATION "${share}/metainfo")

# One file completes all of them; the shell looks for it under each name.
install(FILES "${packaging}/completion.bash" RENAME quibbits
  DESTINATION "${share}/bash-completion/completions")
foreach(tool quibbits-defaults quibbits-sim quibbits-atelier)
  install(CODE "
    set(place \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${share}/bash-completion/completions/${tool}\")
    file(CREATE_LINK quibbits \"\${place}\" SYMBOLIC)
    list(APPEND CMAKE_INSTALL_MANIFEST_FILES \"\${CMAKE_INSTALL_PREFIX}/${share}/bash-completion/completions/${tool}\")")
endforeach()

# Manuals and the record of changes are kept compressed, as readers of both expect.
find_program(GZIP gzip REQUIRED)
set(compressed)
function(quibbits_compress file name)
  set(result "${CMAKE_BINARY_DIR}/share/${name}.gz")
  add_custom_command(OUTPUT "${result}"
    COMMAND "${GZIP}" -9nc "${file}" > "${result}"
    DEPENDS "${file}" VERBATIM)
  set(compressed "${compressed};${result}" PARENT_SCOPE)
endfunction()
foreach(program quibbits quibbits-defaults quibbits-sim quibbits-atelier)
  quibbits_compress("${packaging}/man/${program}.1" "${program}.1")
  install(FILES "${CMAKE_BINARY_DIR}/share/${program}.1.gz" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
endforeach()
quibbits_compress("${packaging}/debian/changelog" changelog)
install(FILES "${CMAKE_BINARY_DIR}/share/changelog.gz" "${packaging}/debian/copyright"
  DESTINATION "${share}/doc/quibbits")
add_custom_target(manuals ALL DEPENDS ${compressed})
