// The bill of materials is whole: every relationship leads to an element, and every library that a program names is one.
// usage: node bill.mjs BILL VERSION PROGRAM...

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { readFileSync } from "node:fs";

const [path, version, ...programs] = process.argv.slice(2);
const bill = JSON.parse(readFileSync(path, "utf8"));
const elements = new Map(bill.packages.map((element) => [element.SPDXID, element]));
assert.equal(elements.size, bill.packages.length, "an element is there twice");
assert.equal(elements.get("SPDXRef-korvane").versionInfo, version);
for (const { spdxElementId, relatedSpdxElement } of bill.relationships)
  for (const id of [spdxElementId, relatedSpdxElement])
    assert.ok(id === "SPDXRef-DOCUMENT" || elements.get(id)?.versionInfo, `nothing is called ${id}`);

const ofCompiler = /^(libc6|libstdc\+\+6|libgcc-s1|libm|ld-linux)/;
const names = new Set(bill.packages.map((element) => element.name));
for (const program of programs) {
  const needed = execFileSync("readelf", ["-dW", program], { encoding: "utf8" }).matchAll(/NEEDED.*\[(.*)\]/g);
  for (const [, library] of needed) {
    const owner = execFileSync("dpkg-query", ["--search", `*/${library}`], { encoding: "utf8" }).split(":")[0];
    assert.ok(ofCompiler.test(owner) || names.has(owner), `${library} of ${owner} is not in the bill`);
  }
}
