#!/usr/bin/env bash
# Brings translations/*.ts up to date with the texts of the sources: new ones come in unfinished,
# those that are gone go. Afterwards translate what is unfinished; tests/docs/test_translations.py
# fails until that is done.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh
install_missing_packages qttools5-dev-tools # lupdate

# Without line numbers: only a changed text changes the files.
lupdate=(/usr/lib/qt5/bin/lupdate -silent -locations none -no-obsolete -source-language zh_CN)
for file in translations/Miravel_*.ts; do
    language=${file##*_}
    "${lupdate[@]}" app ui service localchannel locallibrary \
        -target-language "${language%.ts}" -ts "$file" 2>/dev/null
done
grep -c 'type="unfinished"' translations/Miravel_*.ts || echo "every text is translated"
