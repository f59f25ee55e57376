#!/usr/bin/env bash
# Refreshes the .ts sources from the code and forms; then fill in new entries
# (Qt Linguist, or by hand) so that both files are complete.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
lupdate -I . -locations none -no-obsolete app device store login mainwindow dialogs \
    -ts resources/translations/Chinese.ts resources/translations/English.ts
