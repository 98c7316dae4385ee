// Includes point down the layers only, and each foreign library stays behind its fence.
// usage: node fences.mjs SOURCE_TREE

import { readdirSync, readFileSync } from "node:fs";
import { join, relative } from "node:path";

/** What a folder may include of the project itself. The longest folder that matches a file counts. */
const arrows = {
  "Platform": ["Platform"],
  "Crypt": ["Platform", "Crypt"],
  "Platform/Native": ["Platform"],
  "Platform/View": ["Platform"],
  "Platform/Qt": ["Platform"],
  "Sdk/Events": ["Platform", "Sdk/Events"],
  "Sdk/Messages": ["Platform", "Crypt", "Sdk/Events", "Sdk/Messages"],
  "Sdk/DeviceData": ["Platform", "Crypt", "Sdk/Events", "Sdk/DeviceData"],
  "Sdk/SecureChannel": ["Platform", "Crypt", "Sdk/Events", "Sdk/SecureChannel"],
  "Sdk/Service": ["Platform", "Crypt", "Sdk", "Ui"],
  "Sdk/Transaction": ["Platform", "Crypt", "Sdk/Events", "Sdk/Messages", "Sdk/DeviceData", "Sdk/SecureChannel", "Sdk/Transaction", "Ui"],
  "keyboard": ["Platform", "keyboard"],
  "Ui/Customisation": ["Platform", "Ui/Customisation"],
  "Ui/Screens": ["Platform", "Crypt", "Sdk/Events", "Sdk/Messages", "keyboard", "Ui"],
  "tools": ["Platform", "Crypt", "Sdk", "keyboard", "Ui", "tools"],
  "examples": ["Platform", "Crypt", "Sdk", "keyboard", "Ui", "examples"],
  "tests": ["Platform", "Crypt", "Sdk", "keyboard", "Ui", "tools", "tests"],
  "fuzz": ["Platform", "Crypt", "Sdk", "fuzz", "tests/support"],
  "bench": ["Platform", "Crypt", "Sdk", "keyboard", "Ui", "bench", "tests/support"],
};

/** Which folders may include a foreign library. */
const fences = [
  { library: /^openssl\//, folders: ["Platform/Security", "bench/BareOpenSSL", "tests/support/TestPki", "tools/acs/Pki"] },
  { library: /^zlib\.h$/, folders: ["Platform/Security"] },
  { library: /^unicode\//, folders: ["Platform"] },
  { library: /^simdjson/, folders: ["Platform"] },
  { library: /^(curl|asio)[./]/, folders: ["Platform/Native"] },
  { library: /^fontconfig\//, folders: ["Platform/Native"] },
  { library: /^Q[A-Z]/, folders: ["Platform/Qt", "examples", "tests/Platform/Qt", "tests/examples", "bench/Qt"] },
];

function* sources(folder) {
  for (const entry of readdirSync(folder, { withFileTypes: true })) {
    const path = join(folder, entry.name);
    if (entry.isDirectory()) yield* sources(path);
    else if (/\.(h|cpp)$/.test(entry.name)) yield path;
  }
}

const isIn = (path, folder) => path.startsWith(folder);

function arrowOf(file) {
  const folders = Object.keys(arrows).filter((folder) => isIn(file, folder + "/"));
  return folders.sort((a, b) => b.length - a.length)[0];
}

/** Every breach in a file, as text. */
function breaches(file, text) {
  const found = [];
  const home = arrowOf(file);
  if (!home) return [`${file}: no rule says what this folder may include`];
  for (const [, open, name] of text.matchAll(/^\s*#\s*include\s*([<"])([^>"]+)[>"]/gm)) {
    if (name.endsWith(".moc")) continue; // written by Qt's compiler from the file itself
    const isOwn = open === '"';
    if (isOwn && !arrows[home].some((folder) => isIn(name, folder + "/")))
      found.push(`${file}: ${home} must not include "${name}"`);
    for (const { library, folders } of fences)
      if (!isOwn && library.test(name) && !folders.some((folder) => isIn(file, folder)))
        found.push(`${file}: <${name}> is allowed in ${folders.join(", ")} only`);
  }
  return found;
}

const tree = process.argv[2];
const roots = ["Platform", "Crypt", "Sdk", "keyboard", "Ui", "tools", "examples", "tests", "fuzz", "bench"];
const files = roots.flatMap((root) => [...sources(join(tree, root))]).filter((file) => !file.includes("/package/"));
const all = files.flatMap((file) => breaches(relative(tree, file), readFileSync(file, "utf8")));
for (const breach of all) console.error(breach);
console.log(`${files.length} files, ${all.length} breaches`);
process.exit(all.length > 0 || files.length === 0 ? 1 : 0);
