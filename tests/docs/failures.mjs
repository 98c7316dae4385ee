// docs/integration.md has a row for every text of a `runtimeError` that the library makes itself.
// usage: node failures.mjs SOURCE_TREE

import { readFileSync, readdirSync } from "node:fs";
import { join } from "node:path";

const tree = process.argv[2];
const page = readFileSync(join(tree, "docs/integration.md"), "utf8");
const ends = /\b(?:endWithError|endWithRuntimeError|sendRuntimeErrorToApp|endStart|failed)\(([^;]*);/g;
const rows = /\bAction ChallengeFlow::k\w+\{([^;]*);|\bk(?:NoPages|CanNotBuild)\b\s*=\s*([^;]*);|std::string text = ([^;]*);/g;

const texts = new Set();
for (const folder of ["Sdk/Transaction", "Sdk/Exchange", "Ui/Screens"])
  for (const file of readdirSync(join(tree, folder)).filter((name) => name.endsWith(".cpp"))) {
    const source = readFileSync(join(tree, folder, file), "utf8");
    for (const pattern of [ends, rows])
      for (const [statement] of source.matchAll(pattern))
        for (const [, text] of statement.matchAll(/"([A-Z][^"]{12,})"/g)) texts.add(text);
  }

const told = [...texts].filter((text) => !page.includes(text.slice(0, 21).replace(/[:. ]+$/, "")));
if (texts.size < 20 || told.length > 0) {
  console.error(`Of ${texts.size} texts of runtime errors docs/integration.md does not have: ${told.join(" | ") || "enough were found?"}`);
  process.exit(1);
}
