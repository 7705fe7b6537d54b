#!/usr/bin/env bash
# Installs the Debian 12 packages that building and testing need, when any is missing.
set -euo pipefail
pacotes=(g++ cmake ninja-build pkg-config qt6-base-dev qt6-multimedia-dev libsqlite3-dev libpq-dev postgresql-15 libzip-dev libshp-dev
         libgtest-dev libgmock-dev libbenchmark-dev fonts-liberation2 xvfb xauth
         arj dpkg-dev desktop-file-utils appstream file qt6-translations-l10n libqrencode-dev zbar-tools)
faltam=()
for p in "${pacotes[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || faltam+=("$p")
done
if [ ${#faltam[@]} -gt 0 ]; then
    echo "Instalando: ${faltam[*]}"
    sudo_cmd=""
    [ "$(id -u)" -eq 0 ] || sudo_cmd="sudo"
    $sudo_cmd apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo_cmd apt-get install -y -qq "${faltam[@]}"
fi
