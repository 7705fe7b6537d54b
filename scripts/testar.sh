#!/usr/bin/env bash
# Installs what is missing, builds and runs every test through CTest, headless.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/dependencias.sh
# A developer's ccache, where there is one, spares rebuilding what did not change.
lancador=()
command -v ccache >/dev/null && lancador=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "${lancador[@]}"
cmake --build build --parallel
cd build
QT_QPA_PLATFORM=offscreen ctest --output-on-failure --timeout 900
