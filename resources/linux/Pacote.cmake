# The Debian package: the program folder under /usr/lib/quizora, the launcher, the menu entry, the icon and
# the AppStream description. `cmake --build build --target package` writes quizora_<version>_amd64.deb.
set(PASTA_INSTALADA lib/quizora)
set(LINUX ${CMAKE_CURRENT_LIST_DIR})

install(TARGETS Quizora quizora-migra RUNTIME DESTINATION ${PASTA_INSTALADA})
install(DIRECTORY ${PASTA_PROGRAMA}/Ajuda ${PASTA_PROGRAMA}/Ícones ${PASTA_PROGRAMA}/Sons
        DESTINATION ${PASTA_INSTALADA})
# Only the seed files: a database made by running the build's own copy never goes into the package.
install(FILES ${CMAKE_BINARY_DIR}/sementes/Temp.Mdb ${CMAKE_BINARY_DIR}/sementes/Temp.Zip
        DESTINATION ${PASTA_INSTALADA}/Dados)
install(DIRECTORY DESTINATION ${PASTA_INSTALADA}/Relatórios)

install(PROGRAMS ${LINUX}/quizora ${LINUX}/quizora-migra DESTINATION bin)
install(FILES ${LINUX}/br.com.norvane.Quizora.desktop DESTINATION share/applications)
install(FILES ${LINUX}/br.com.norvane.Quizora.metainfo.xml DESTINATION share/metainfo)
foreach(lado 48 128 256)
    install(FILES ${LINUX}/icones/quizora-${lado}.png DESTINATION share/icons/hicolor/${lado}x${lado}/apps
            RENAME quizora.png)
endforeach()
install(FILES ${LINUX}/icones/quizora.svg DESTINATION share/icons/hicolor/scalable/apps)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quizora)
set(CPACK_PACKAGE_VENDOR "Norvane Informática")
set(CPACK_PACKAGE_CONTACT "Norvane Informática <suporte@norvane.com.br>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "jogo de perguntas e dinâmicas para quem conduz um grupo")
set(CPACK_PACKAGE_DESCRIPTION
    "Um jogo de perguntas e respostas para um a cinco competidores, com ajudas, hall da fama e sorteio, \
um banco de perguntas, dinâmicas de grupo, citações devocionais, contas de usuário com direitos por \
janela, relatórios, trilha de auditoria e log de ocorrências.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION games)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://www.norvane.com.br")
# The libraries the program links come from dpkg-shlibdeps; the fonts are the ones the windows and
# reports ask for by name (Courier New is Liberation Mono here).
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-liberation2")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils, qt6-translations-l10n")
include(CPack)
