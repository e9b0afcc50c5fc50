# The macOS package: installing puts Orvane.app at the prefix's top, copies the Qt frameworks, plugins
# and QML modules it uses into it (macdeployqt) and signs the whole bundle ad hoc; CPack's DragNDrop
# generator makes Orvane-<version>.dmg of it, with a link to /Applications beside the app.
find_program(ORVANE_MACDEPLOYQT macdeployqt HINTS "${QT6_INSTALL_PREFIX}/${QT6_INSTALL_BINS}" REQUIRED)

install(TARGETS orvane BUNDLE DESTINATION .)
install(CODE "
  set(app \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/Orvane.app\")
  execute_process(COMMAND \"${ORVANE_MACDEPLOYQT}\" \"\${app}\" \"-qmldir=${PROJECT_SOURCE_DIR}/src/ui\" -always-overwrite
                  COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND codesign --force --deep --sign - \"\${app}\" COMMAND_ERROR_IS_FATAL ANY)
")

set(CPACK_GENERATOR DragNDrop)
set(CPACK_PACKAGE_NAME Orvane)
set(CPACK_PACKAGE_VENDOR "the Orvane developers")
set(CPACK_PACKAGE_FILE_NAME "Orvane-${PROJECT_VERSION}")
set(CPACK_DMG_VOLUME_NAME Orvane)
set(CPACK_DMG_FORMAT UDZO)
include(CPack)
