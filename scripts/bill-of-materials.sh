#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# bill-of-materials.sh ARTIFACT: prints the bill of materials of a package or program, as SPDX 2.3 in JSON. Of the
# libraries that the static program contains, the versions are those installed here.
set -eu
cd "$(dirname "$0")/.."
artifact=$1
name=$(basename "$artifact")
version=$(sed -n 's/^project(ZSpace VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
checksum=$(sha256sum "$artifact" | cut -d' ' -f1)
created=$(date -u -d "@${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct 2>/dev/null || date +%s)}" +%Y-%m-%dT%H:%M:%SZ)

# library NAME DEBIAN-PACKAGE LICENSE: one library that the program contains.
library() {
    installed=$(dpkg-query -W -f '${Version}' "$2" 2>/dev/null || echo NOASSERTION)
    cat <<ENTRY
    ,{ "SPDXID": "SPDXRef-$1", "name": "$1", "versionInfo": "$installed", "downloadLocation": "NOASSERTION",
      "filesAnalyzed": false, "licenseConcluded": "$3", "licenseDeclared": "$3", "copyrightText": "NOASSERTION" }
ENTRY
}
case $name in
*.deb) content=$(dpkg-deb -c "$artifact") ;;
*.tar.gz) content=$(tar -tzf "$artifact") ;;
*) content=/bin/$name ;;
esac
# On macOS the program is not linked statically.
case "$name $content" in
*Darwin* | *macos*) contains_program=no ;;
*/bin/CdkRSUninstaller*) contains_program=yes ;;
*) contains_program=no ;;
esac

cat <<START
{
  "spdxVersion": "SPDX-2.3",
  "dataLicense": "CC0-1.0",
  "SPDXID": "SPDXRef-DOCUMENT",
  "name": "$name",
  "documentNamespace": "urn:sha256:$checksum",
  "creationInfo": { "created": "$created", "creators": ["Organization: The ZSpace authors", "Tool: bill-of-materials.sh"] },
  "packages": [
    { "SPDXID": "SPDXRef-artifact", "name": "$name", "versionInfo": "$version", "downloadLocation": "NOASSERTION",
      "filesAnalyzed": false, "licenseConcluded": "MIT", "licenseDeclared": "MIT",
      "copyrightText": "2026 The ZSpace authors",
      "checksums": [{ "algorithm": "SHA256", "checksumValue": "$checksum" }] }
START
[ "$contains_program" = no ] || {
    library glibc libc6-dev LGPL-2.1-or-later
    library libstdcxx libstdc++6 "GPL-3.0-or-later WITH GCC-exception-3.1"
    library libgcc libgcc-s1 "GPL-3.0-or-later WITH GCC-exception-3.1"
}
echo '  ],'
echo '  "relationships": ['
echo '    { "spdxElementId": "SPDXRef-DOCUMENT", "relationshipType": "DESCRIBES", "relatedSpdxElement": "SPDXRef-artifact" }'
[ "$contains_program" = no ] || for library in glibc libstdcxx libgcc; do
    echo "    ,{ \"spdxElementId\": \"SPDXRef-artifact\", \"relationshipType\": \"STATIC_LINK\", \"relatedSpdxElement\": \"SPDXRef-$library\" }"
done
echo '  ]'
echo '}'
