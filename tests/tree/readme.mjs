// The program in a page is one that is compiled and run.
// usage: node readme.mjs PAGE.md PROGRAM

import { readFileSync } from "node:fs";
import { extname } from "node:path";

const [page, program] = process.argv.slice(2).map((path) => readFileSync(path, "utf8"));
const language = extname(process.argv[3]).slice(1);
const shown = [...page.matchAll(new RegExp(`^\`\`\`${language}\\n(.*?)^\`\`\`$`, "gms"))].map(([, text]) => text);
if (shown.length !== 1 || shown[0] !== program) {
  console.error(`${process.argv[2]} has ${shown.length} programs in ${language}, and should have ${process.argv[3]} alone, as it is.`);
  process.exit(1);
}
