#!/usr/bin/env bash
# Makes the Debian package from the build and checks what an installation gets from it: the files in their
# places, the menu entry and the AppStream description accepted by their validators, and dependencies on
# the runtime packages of the libraries the program links.
set -uo pipefail
construcao="$1"
trabalho="$(mktemp -d)"
trap 'rm -rf "$trabalho"' EXIT
falhas=0
falha() { echo "FALHA: $*"; falhas=$((falhas + 1)); }

if ! cpack --config "$construcao/CPackConfig.cmake" -B "$trabalho" >"$trabalho/cpack.log" 2>&1; then
    cat "$trabalho/cpack.log"
    echo "FALHA: o pacote não foi gerado"
    exit 1
fi
versao="$(sed -n 's/^set(CPACK_PACKAGE_VERSION "\(.*\)")$/\1/p' "$construcao/CPackConfig.cmake")"
pacote="$trabalho/quizora_${versao}_amd64.deb"
[ -f "$pacote" ] || { ls "$trabalho"; echo "FALHA: falta $pacote"; exit 1; }

dpkg-deb -c "$pacote" | awk '{ $1 = $2 = $3 = $4 = $5 = ""; sub(/^ +/, ""); print }' >"$trabalho/lista"
for esperado in \
    ./usr/bin/quizora \
    ./usr/bin/quizora-migra \
    ./usr/lib/quizora/Quizora \
    ./usr/lib/quizora/quizora-migra \
    ./usr/lib/quizora/Dados/Temp.Mdb \
    ./usr/lib/quizora/Dados/Temp.Zip \
    ./usr/lib/quizora/Relatórios/ \
    ./usr/lib/quizora/Ajuda/Index.Html \
    ./usr/lib/quizora/Ajuda/cit_0001.txt \
    "./usr/lib/quizora/Ícones/Norvane Informática.Ico" \
    ./usr/lib/quizora/Sons/acerto.wav \
    ./usr/share/applications/br.com.norvane.Quizora.desktop \
    ./usr/share/metainfo/br.com.norvane.Quizora.metainfo.xml \
    ./usr/share/icons/hicolor/48x48/apps/quizora.png \
    ./usr/share/icons/hicolor/128x128/apps/quizora.png \
    ./usr/share/icons/hicolor/256x256/apps/quizora.png \
    ./usr/share/icons/hicolor/scalable/apps/quizora.svg; do
    grep -qxF "$esperado" "$trabalho/lista" || falha "o pacote não traz $esperado"
done
# A database made by running the build's copy is the builder's, never the user's.
grep -qE '/Dados/(Dados|Manutenção)\.Mdb$|/Log de Ocorrências\.Log$' "$trabalho/lista" &&
    falha "o pacote traz dados de uma execução"

dpkg-deb -x "$pacote" "$trabalho/raiz"
[ -x "$trabalho/raiz/usr/bin/quizora" ] || falha "o lançador não é executável"
grep -q '^exec /usr/lib/quizora/Quizora' "$trabalho/raiz/usr/bin/quizora" || falha "o lançador não chama o programa"
for lado in 48 128 256; do
    tamanho="$(file -b "$trabalho/raiz/usr/share/icons/hicolor/${lado}x${lado}/apps/quizora.png")"
    [[ "$tamanho" == *"$lado x $lado"* ]] || falha "ícone de $lado pixels tem $tamanho"
done

entrada="$trabalho/raiz/usr/share/applications/br.com.norvane.Quizora.desktop"
desktop-file-validate "$entrada" || falha "desktop-file-validate recusou a entrada do menu"
grep -qx 'Categories=Education;Game;' "$entrada" || falha "categorias da entrada do menu"
grep -qx 'Exec=quizora' "$entrada" || falha "comando da entrada do menu"
grep -qx 'Icon=quizora' "$entrada" || falha "ícone da entrada do menu"
appstreamcli validate --no-net "$trabalho/raiz/usr/share/metainfo/br.com.norvane.Quizora.metainfo.xml" ||
    falha "appstreamcli recusou a descrição AppStream"

dependencias="$(dpkg-deb -f "$pacote" Depends)"
for biblioteca in libqt6widgets6 libqt6gui6 libqt6core6 libqt6multimedia6 libsqlite3-0 libzip4 fonts-liberation2; do
    [[ "$dependencias" == *"$biblioteca"* ]] || falha "falta a dependência $biblioteca em: $dependencias"
done

[ "$falhas" -eq 0 ] || exit 1
echo "Pacote $(basename "$pacote") verificado"
