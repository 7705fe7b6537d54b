#!/usr/bin/env bash
# Installs what is missing, builds, stages build/Quizora/ and starts the program.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/dependencias.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build --parallel
exec ./build/Quizora/Quizora
