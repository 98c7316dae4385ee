// korvane-screen as its users start it: pictures are looked into, and refusals read.

import assert from "node:assert/strict";
import { spawn, spawnSync } from "node:child_process";
import { existsSync, mkdtempSync, readFileSync, renameSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { createInterface } from "node:readline";
import { after, test } from "node:test";
import { inflateSync } from "node:zlib";

import { Acs } from "../acs/Acs.mjs";

const folder = mkdtempSync(join(tmpdir(), "korvane-screen-"));
after(() => rmSync(folder, { recursive: true }));

// The web engine starts neither as root nor in most containers otherwise; the pages are the tests' own.
const env = { ...process.env, QTWEBENGINE_DISABLE_SANDBOX: "1" };
const run = (...options) => spawnSync(process.env.KORVANE_SCREEN, options, { env, encoding: "utf8" });
const written = (name, value) => {
  const file = join(folder, name);
  writeFileSync(file, typeof value === "string" ? value : JSON.stringify(value, null, 1));
  return file;
};
const example = (name) => JSON.parse(readFileSync(join(process.env.KORVANE_EXAMPLES, `${name}.json`), "utf8"));
const hasPages = process.env.KORVANE_WEB === "1";
const page = (html) => ({ ...example("html"), acsHTML: Buffer.from(html).toString("base64url") });

/** Draws, and reads of the PNG its size and its first pixel, which no filter of PNG changes. */
function draw(cres, ...options) {
  const output = join(folder, "out.png");
  const { status, stderr } = run(written("cres.json", cres), "-o", output, ...options);
  assert.equal(status, 0, stderr);
  const png = readFileSync(output);
  const from = png.indexOf("IDAT");
  const data = png.subarray(from + 4, from + 4 + png.readUInt32BE(from - 4));
  const [red, green, blue] = inflateSync(data, { finishFlush: 2 }).subarray(1, 4);
  return { png, size: `${png.readUInt32BE(16)}x${png.readUInt32BE(20)}`, corner: [red, green, blue] };
}

test("Every kind of screen is drawn, and everything that is asked for shows", () => {
  const theme = written("theme.json", { toolbar: { backgroundColor: { light: "#0F4C46", dark: "#102030" } } });
  const plain = draw(example("text"));
  assert.equal(plain.size, "390x844");
  assert.deepEqual(draw(example("text"), "--theme", theme).corner, [0x0f, 0x4c, 0x46]);
  const pictures = [
    plain,
    ...["singleSelect", "multiSelect", "oob", ...(hasPages ? ["html"] : [])].map((name) => draw(example(name))),
    ...(hasPages ? [draw(page("<p>Another page"))] : []),
    draw(example("text"), "--keyboard"),
    draw(example("text"), "--dark"),
    draw(example("text"), "--text-scale", "1.4"),
    draw({ ...example("text"), challengeInfoTextIndicator: "Y" }),
  ];
  assert.equal(new Set(pictures.map(({ png }) => png.toString("base64"))).size, pictures.length);
  const lying = draw(example("oob"), "--dark", "--theme", theme, "--size", "568x320");
  assert.deepEqual([lying.size, lying.corner], ["568x320", [0x10, 0x20, 0x30]]);
  const [width, height] = draw(example("text"), "--all").size.split("x").map(Number);
  assert.ok(width > 2 * (320 + 390 + 768) && height > 1024 + 2 * 768);
});

test("What cannot be drawn is told with its reason", () => {
  const text = example("text");
  const rows = [
    [1, { ...text, acsUiType: "09", challengeInfoHeader: "x".repeat(46) },
      /cres.json:9: acsUiType: has a value that is not allowed.* error 203\.\n.*:10: challengeInfoHeader: .*1 to 45 characters.* 203\./],
    [1, { ...text, challengeInfoLabel: undefined, acsTransID: undefined }, /: acsTransID: .* error 201\./],
    [1, { ...text, challengeInfoText: 7 }, /:12: challengeInfoText: .* is not a string; .* error 203\./],
    [1, { ...text, challengeCompletionInd: "Y", transStatus: "Y", acsUiType: undefined }, /ends the challenge and shows no screen/],
    hasPages ? [1, { ...example("html"), acsHTML: "_w" }, /cannot show this CRes/]
      : [1, example("html"), /web page, and this program was built without an engine/],
    [1, "{\n", /cres.json:2: This is not JSON\./],
    [1, text, /picture cannot be written: No such file or directory\./, "-o", join(folder, "none", "out.png")],
    [1, text, /picture cannot be written: No space left on device\./, "-o", "/dev/full"],
    [2, text, /theme.json:2: buttons.sumbit: is not known here; known are verify/, "--theme",
      written("theme.json", '{"buttons": {\n"sumbit": {}}}')],
    [2, example("oob"), /This screen has no field/, "--keyboard"],
    [2, example("oob"), /This screen has no field/, "--keyboard", "--all"],
    [2, text, /must be width and height in points/, "--size", "390"],
    [2, text, /must be width and height in points/, "--size", "390x199"],
    [2, text, /must be a URL of https or http/, "--acs", "ftp://127.0.0.1/authenticate"],
    [2, text, /--all excludes|excludes --all/, "--all", "--dark"],
  ];
  for (const [expected, cres, reason, ...options] of rows) {
    const output = options[0] === "-o" ? [] : ["-o", join(folder, "refused.png")];
    const { status, stderr } = run(written("cres.json", cres), ...output, ...options);
    assert.match(stderr, reason);
    assert.equal(status, expected, stderr);
  }
  const unseen = spawnSync(process.env.KORVANE_SCREEN, [written("cres.json", text)], { env: {}, encoding: "utf8" });
  assert.deepEqual([unseen.status, /There is no display/.test(unseen.stderr)], [2, true]);
  const deaf = spawnSync(process.env.KORVANE_SCREEN, [written("cres.json", text)], { env: { DISPLAY: ":987" }, encoding: "utf8" });
  assert.deepEqual([deaf.status, deaf.stderr.split(" (")[0]], [1, "korvane-screen: No display answers"]);
  const half = spawnSync("sh", ["-c", `ulimit -f 1; trap "" XFSZ; "$KORVANE_SCREEN" ${written("cres.json", text)} -o ${join(folder, "half.png")}`], { env, encoding: "utf8" });
  assert.match(half.stderr, /picture cannot be written: File too large\./);
  assert.deepEqual([half.status, existsSync(join(folder, "half.png"))], [1, false]);
});

test("A window follows its files, also where a new one takes an old one's place", { timeout: 60000 }, async () => {
  const file = written("followed.json", "{");
  const window = spawn(process.env.KORVANE_SCREEN, [file], { env: { ...env, QT_QPA_PLATFORM: "offscreen", QT_QUICK_BACKEND: "software" } });
  const lines = createInterface({ input: window.stderr })[Symbol.asyncIterator]();
  const nextLine = async () => (await lines.next()).value;
  assert.match(await nextLine(), /followed.json:1: This is not JSON/);
  written("followed.json", { ...example("text"), acsUiType: "08" });
  assert.match(await nextLine(), /:9: acsUiType: .* error 203/);
  renameSync(written("next.json", "[]"), file);
  assert.match(await nextLine(), /:1: must be an object/);
  const ended = new Promise((resolve) => window.on("exit", resolve));
  window.kill();
  await ended;
});

test("A challenge against an ACS is played to its ending, and one that cannot begin is told", { timeout: 60000 }, async () => {
  const acs = await Acs.play("faultMissingField");
  const { directoryServerID, directoryServerRoot, deviceDataEC, tlsRoot } = acs.listening;
  const server = ["--directory-server", directoryServerID, "--ds-certificate", deviceDataEC, "--ds-root", directoryServerRoot];
  const playAt = (path, ...options) => new Promise((resolve) => {
    const child = spawn(process.env.KORVANE_SCREEN, ["--acs", acs.url + path, ...server, ...options],
      { env: { ...env, QT_QPA_PLATFORM: "offscreen", QT_QUICK_BACKEND: "software" } });
    const said = { stdout: "", stderr: "" };
    for (const stream of ["stdout", "stderr"]) child[stream].on("data", (text) => (said[stream] += text));
    child.on("close", (status) => resolve({ status, ...said }));
  });
  const ended = await playAt("/authenticate", "--ca", tlsRoot);
  assert.equal(ended.status, 0, ended.stderr);
  assert.match(ended.stdout, /^\{"event":"protocolError","message":".*error 201.*challengeCompletionInd.*"\}\n$/);
  for (const [path, ...options] of [["/authenticate"], ["/nowhere", "--ca", tlsRoot]]) {
    const { status, stderr } = await playAt(path, ...options);
    assert.match(stderr, new RegExp(`${path}: (There is no answer|The answer has no values)`));
    assert.equal(status, 1);
  }
  assert.equal(await acs.stop(), 0);
});
