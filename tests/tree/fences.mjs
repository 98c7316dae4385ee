// What the compiler cannot see of the layers: each folder keeps to the arrows that its README names, foreign libraries
// stay behind their fences, and nobody but the fillings makes threads or reads clocks.
// usage: node fences.mjs SOURCE_TREE

import { existsSync, readdirSync, readFileSync } from "node:fs";
import { dirname, join, relative } from "node:path";

const roots = ["Platform", "Crypt", "Sdk", "keyboard", "Ui", "Input", "Cardholder", "C", "java", "tools", "examples", "tests", "fuzz", "bench"];

/** Which folders, or sources, may include a foreign library. */
const libraries = [
  { name: /^openssl\//, folders: ["Platform/Security", "bench/BareOpenSSL", "tests/support/TestPki", "tools/acs/Pki"] },
  { name: /^zlib\.h$/, folders: ["Platform/Security"] },
  { name: /^unicode\//, folders: ["Platform/Unicode.cpp"] },
  { name: /^simdjson/, folders: ["Platform"] },
  { name: /^(curl|asio)[./]/, folders: ["Platform/Native", "tests/Platform/Hosted"] },
  { name: /^jni\.h$/, folders: ["java"] },
  { name: /^fontconfig\//, folders: ["Platform/Headless"] },
  { name: /^Q[A-Z]/, folders: ["Platform/Qt", "tools/screen", "examples", "tests/Platform/Qt", "tests/examples", "tests/tools/acs/page",
    "bench/Qt"] },
];

/** What only the folders named may say: all waiting, and all knowledge of the time, goes through `Dispatch`. */
const words = [
  {
    name: "a thread or a clock of its own",
    pattern: /\bstd::(jthread|thread|this_thread|async)\b|_clock::now\b/,
    folders: ["Platform/Native", "Platform/Hosted", "Platform/Qt", "tools/acs", "tools/challenge/play", "examples", "tests", "bench", "fuzz"],
  },
];

/** Programs that are built apart from the tree. */
const isApart = (file) => /^tests\/(package|docs)\//.test(file);

function* sources(folder) {
  for (const entry of readdirSync(folder, { withFileTypes: true })) {
    const path = join(folder, entry.name);
    if (entry.isDirectory()) yield* sources(path);
    else if (/\.(h|cpp)$/.test(entry.name)) yield path;
  }
}

/**
 * What a folder may include of the project itself: "May include `A` and `B`." in its README, or in that of the nearest
 * folder above which says so. A folder that is named stands for the files that lie directly in it.
 */
function arrowsOf(tree, folder) {
  for (let home = folder; home !== "."; home = dirname(home)) {
    const readme = join(tree, home, "README.md");
    const text = existsSync(readme) ? readFileSync(readme, "utf8").replaceAll("\n", " ") : "";
    const sentence = text.match(/May include ([^.;]*)/)?.[1];
    if (!sentence) continue;
    if (sentence.startsWith("any layer")) return { home, isOpen: true, folders: [] };
    return { home, folders: [...sentence.matchAll(/`([A-Za-z/]+)`/g)].map(([, name]) => name) };
  }
  return undefined;
}

const isIn = (path, folders) => folders.some((folder) => path.startsWith(folder));

/** Every breach in a file, as text. */
function breaches(file, text, arrows) {
  if (!arrows) return [`${file}: no README says what this folder may include`];
  const found = [];
  for (const [, open, name] of text.matchAll(/^\s*#\s*include\s*([<"])([^>"]+)[>"]/gm)) {
    if (name.endsWith(".moc")) continue; // written by Qt's compiler from the file itself
    const isOwn = open === '"';
    const folder = dirname(name);
    if (isOwn && !arrows.isOpen && folder !== dirname(file) && folder !== arrows.home && !arrows.folders.includes(folder))
      found.push(`${file}: ${arrows.home}/README.md does not name ${folder}, of which this includes "${name}"`);
    for (const library of libraries)
      if (!isOwn && library.name.test(name) && !isIn(file, library.folders))
        found.push(`${file}: <${name}> is allowed in ${library.folders.join(", ")} only`);
  }
  for (const word of words)
    if (word.pattern.test(text) && !isIn(file, word.folders))
      found.push(`${file}: ${word.name} (${text.match(word.pattern)[0]}) is allowed in ${word.folders.join(", ")} only`);
  return found;
}

/** READMEs that name a folder which is not there. */
function lies(tree, folders) {
  return [...folders].flatMap((folder) => {
    const arrows = arrowsOf(tree, folder);
    const missing = (arrows?.folders ?? []).filter((name) => !existsSync(join(tree, name)));
    return missing.map((name) => `${arrows.home}/README.md names ${name}, which is not there`);
  });
}

const tree = process.argv[2];
const files = roots.flatMap((root) => [...sources(join(tree, root))]).map((path) => relative(tree, path)).filter((file) => !isApart(file));
const folders = new Set(files.map(dirname));
const all = [
  ...new Set(lies(tree, folders)),
  ...files.flatMap((file) => breaches(file, readFileSync(join(tree, file), "utf8"), arrowsOf(tree, dirname(file)))),
];
for (const breach of all) console.error(breach);
console.log(`${files.length} files, ${all.length} breaches`);
process.exit(all.length > 0 || files.length === 0 ? 1 : 0);
