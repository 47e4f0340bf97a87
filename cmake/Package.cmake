# The Debian package and the source archive, made by cpack; ./package does both.
set(QUIBBITS_MAINTAINER "the Quibbits authors <authors@quibbits.example>" CACHE STRING
  "Who answers for the Debian package")
set(CPACK_PACKAGE_NAME quibbits)
set(CPACK_PACKAGE_VENDOR "the Quibbits authors")
set(CPACK_PACKAGE_CONTACT "${QUIBBITS_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "small creatures that live on your desktop")
set(CPACK_PACKAGE_DESCRIPTION
"Small creatures walk along the bottom of the screen, hop onto the panel,
climb files, nap, play, get hungry and get to know you. They decide for
themselves what to do, and you can read why. They notice the battery, music
and calls, look after the Downloads folder, and strike files into the Trash
when told to.

The package also holds a simulator that plays a creature's day in seconds,
the atelier that draws every picture, and a tool for what is remembered.")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_GENERATOR DEB)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${QUIBBITS_MAINTAINER}")
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SECTION x11)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-dejavu-core | fonts-noto-core")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-noto-color-emoji")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "at-spi2-core")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_SOURCE_GENERATOR TGZ)
set(CPACK_SOURCE_PACKAGE_FILE_NAME "quibbits-${PROJECT_VERSION}")
# Anchored: somebody's checkout may itself lie in a folder called build.
string(REGEX REPLACE "([][+.*?()^$|\\\\])" "\\\\\\1" here "${PROJECT_SOURCE_DIR}")
set(CPACK_SOURCE_IGNORE_FILES
  "^${here}/build/" "^${here}/\\.git" "^${here}/\\.cache/" "^${here}/compile_commands\\.json$")
include(CPack)
