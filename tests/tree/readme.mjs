// The program in the README is one that is compiled and run.
// usage: node readme.mjs README.md PROGRAM.cpp

import { readFileSync } from "node:fs";

const [readme, program] = process.argv.slice(2).map((path) => readFileSync(path, "utf8"));
const shown = [...readme.matchAll(/^```cpp\n(.*?)^```$/gms)].map(([, text]) => text);
if (shown.length !== 1 || shown[0] !== program) {
  console.error(`The README has ${shown.length} C++ programs, and should have ${process.argv[3]} alone, as it is.`);
  process.exit(1);
}
