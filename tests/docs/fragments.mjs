// Makes one source of all C++ blocks of a page, behind what their readers are taken to have declared.
// usage: node fragments.mjs PAGE PRELUDE SOURCE

import { readFileSync, writeFileSync } from "node:fs";

const [page, prelude, source] = process.argv.slice(2);
const blocks = [...readFileSync(page, "utf8").matchAll(/^```cpp\n(.*?)^```$/gms)].map(([, text]) => text);
if (blocks.length === 0) throw new Error(`${page} shows no C++`);
writeFileSync(source, [readFileSync(prelude, "utf8"), ...blocks].join("\n"));
