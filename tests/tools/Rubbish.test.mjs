// No input of its user's aborts a tool: each piece of rubbish with the exit code, and the reason on stderr.

import { strict as assert } from "node:assert";
import { spawnSync } from "node:child_process";
import { cpSync, mkdirSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { after, test } from "node:test";

import { Acs, folder } from "./acs/Acs.mjs";

const at = (name) => join(folder, name);
const programs = { acs: process.env.KORVANE_ACS, challenge: process.env.KORVANE_CHALLENGE, jose: process.env.KORVANE_JOSE };
/** What would steer a terminal or turn what is read on it: all controls but the end of a line, and bidi marks. */
const steering = /[\u0000-\u0009\u000b-\u001f\u007f-\u009f\u061c\u200e\u200f\u2028-\u202e\u2066-\u2069]/;

const taken = await Acs.start(["--pki", at("pki")]);
after(async () => assert.equal(await taken.stop(), 0));
mkdirSync(at("folder"));
writeFileSync(at("text"), "text");
writeFileSync(at("plan"), '{"ending":{"event":"cancelled"}}');
writeFileSync(at("half"), "-----BEGIN CERTIFICATE-----\nAAAA\n");
for (const copy of ["wrong-key", "no-certificate", "no-key"]) cpSync(at("pki"), at(copy), { recursive: true });
cpSync(at("pki/acs-ec.key"), at("wrong-key/acs-rsa.key"));
writeFileSync(at("no-certificate/acs-rsa.der"), "x");
rmSync(at("no-key/acs-rsa.key"));
mkdirSync(at("no-key/acs-rsa.key"));

const acs = (...args) => ({ tool: "acs", args: ["--pki", at("pki"), ...args] });
const bare = (tool, ...args) => ({ tool, args });
const jose = (input) => ({ tool: "jose", args: [], input });
/** The cardholder with one option of another value; a second value in place of a name's file. */
const challenge = (options = {}, rest = {}) => ({ tool: "challenge", ...rest,
  args: Object.entries({ "--directory-server": "A", "--algorithm": "EC", "--ds-certificate": at("pki/device-data-ec.der"),
    "--ds-root": at("pki/ds-root.der"), ...options }).flat() });
/** A run whose standard streams a shell opens or closes. */
const streams = (redirection, run) => ({ ...run, redirection });

const rows = [
  ["nothing", bare("acs"), 2, /--pki is required/],
  ["an unknown option", acs("--unknown"), 2, /--unknown/],
  ["an address that is not loopback's", acs("--listen", "0.0.0.0:0"), 2, /--listen: 0\.0\.0\.0:0 is no address .* need --expose/],
  ["a name that says more", acs("--expose", "a,IP:8.8.8.8"), 2, /--expose: a,IP:8\.8\.8\.8 is no name or IPv4 address/],
  ["a name that the PKI is not for", acs("--expose", "127.0.0.2"), 2, /tls-server\.pem is not for 127\.0\.0\.2: give --pki a new/],
  ["a device for a sign", acs("--ready-file", "/dev/null"), 2, /\/dev\/null is there, and is no file that can be replaced/],
  ["no folder of scenarios", acs("--scenarios", at("absent")), 2, /--scenarios: .*absent: No such file/],
  ["a port beyond all ports", acs("--listen", "127.0.0.1:65536"), 2, /is no address/],
  ["a port that is taken", acs("--listen", new URL(taken.url).host), 2, /Nothing can listen on .*: Address already in use/],
  ["no PKI", bare("acs", "--pki", ""), 2, /--pki: must not be empty/],
  ["a PKI below a device", bare("acs", "--pki", "/dev/null/pki"), 2, /\/dev\/null\/pki/],
  ["an EC key for an RSA key", bare("acs", "--pki", at("wrong-key")), 2, /acs-rsa\.key: This is no private RSA key/],
  ["a certificate that is none", bare("acs", "--pki", at("no-certificate")), 2, /acs-rsa\.der: This is no certificate/],
  ["a folder for a key", bare("acs", "--pki", at("no-key")), 2, /acs-rsa\.key: .*Is a directory/],
  ["a scenario that is not there", acs("--scenario", at("absent")), 2, /absent: The file cannot be read: No such file/],
  ["a folder for a scenario", acs("--scenario", at("folder")), 2, /folder: The file cannot be read: Is a directory/],
  ["a scenario without end", acs("--scenario", "/dev/zero"), 2, /\/dev\/zero: The file has more than 16 MiB/],
  ["a log below a device", acs("--log", "/dev/null/log"), 2, /log file .*: Not a directory/],
  ...["nan", "0", "86401"].map((time) =>
    [`a lifetime of ${time}`, acs("--forget-after", time), 2, /--forget-after: must lie between 0\.001 and 86400/]),
  ["an option that plays with the terminal", bare("acs", "--pki", "p", "--\u009b2J\u001b[2J\u202e"), 2, /--\\u009b2J\\u001b\[2J\\u202e/],
  ["a file that plays with the terminal", acs("--scenario", "\u009b2J\n"), 2, /\\u009b2J\n?: The file cannot be read/],

  ["nothing", bare("challenge"), 2, /--directory-server is required/],
  ["an unknown algorithm", challenge({ "--algorithm": "X" }), 2, /--algorithm/],
  ["a certificate that is not there", challenge({ "--ds-certificate": at("absent") }), 2, /absent: .*No such file/],
  ["an RSA certificate under EC", challenge({ "--ds-certificate": at("pki/device-data-rsa.der") }), 2, /has no EC key, as --algorithm says, but an RSA key/],
  ["an EC certificate under RSA", challenge({ "--algorithm": "RSA" }), 2, /has no RSA key, as --algorithm says, but an EC key/],
  ["a root that is no certificate", challenge({ "--ds-root": at("text") }), 2, /text: This is no certificate, neither in DER nor in PEM/],
  ["a key for a root", challenge({ "--ds-root": at("pki/acs-ec.key") }), 2, /acs-ec\.key: This PEM text holds no certificate, but: [A-Z ]*PRIVATE KEY\./],
  ["a folder for an authority", challenge({ "--ca": at("folder") }), 2, /folder: The file cannot be read: Is a directory/],
  ["a URL that is none", challenge({ "--authenticate": "ftp://x" }), 2, /--authenticate: must be a URL of https or http/],
  ["a plan without a server", challenge({ "--play": at("text") }), 2, /--play requires --authenticate/],
  ["outcomes below a device", challenge({ "--authenticate": taken.url, "--play": at("plan"), "--junit": "/dev/null/x" }), 2,
    /--junit: \/dev\/null\/x: The file cannot be written: Not a directory/],
  ["a certificate that lacks its end", challenge({ "--ca": at("half") }), 2, /half: The last certificate lacks its end/],
  ["a time that is no number", challenge({ "--timeout": "nan" }), 2, /--timeout/],
  ["a version that plays with the terminal", challenge({ "--message-version": "\u009b2J" }), 1, /^$/, /\\u009b2J/],
  ["numbers that overflow", challenge({}, { input: `{"acsTransID":1e400}\n{"acsTransID":${"9".repeat(10000)}}\n` }), 1, /^/,
    /"event":"error".*\n.*"event":"error"/],
  ["no standard input", streams("<&-", challenge()), 1, /^/],
  ["no standard output", streams(">&-", challenge()), 1, /The output cannot be written/],
  ["no room for the output", streams(">/dev/full", challenge()), 1, /The output cannot be written/],
  ["no standard streams", streams("<&- >&- 2>&-", challenge()), 1, /^/],

  ["an unknown option", bare("jose", "--unknown"), 2, /--unknown/],
  ["nothing to inspect", bare("jose", "inspect"), 2, /COMPACT is required/],
  ["an operation that plays with the terminal", jose('{"op":"\u009b2J\u007f\u202e\u2028"}'), 1, /^$/,
    /names no operation: \\u009b2J\\u007f\\u202e\\u2028"/],
  ["numbers that overflow", jose(`{"op":1e400}\n{"op":${"9".repeat(10000)}}`), 1, /^$/, /notJSON.*\n.*notJSON/],
  ["a message of two parts", jose('{"op":"jws.verify","jws":"a.b","key":{"kty":"RSA","n":"AQAB","e":"AQAB"}}'), 1, /^$/,
    /"description":"The operation failed: invalid compact serialization component count\."/],
  ["nesting without end", jose("[".repeat(100000)), 1, /^$/, /notJSON/],
  ["no standard input", streams("<&-", jose()), 1, /The input cannot be read: Bad file descriptor/],
  ["a folder as standard input", streams(`<${folder}`, jose()), 1, /The input cannot be read: Is a directory/],
  ["no room for the output", streams(">/dev/full", jose("{}")), 1, /The output cannot be written/],
  ["no room for the help", streams(">/dev/full", bare("jose", "--help")), 1, /The output cannot be written/],
  ["a reader that goes", streams("| head -c1 >&2", jose("{}\n".repeat(100000))), 1, /The output cannot be written/],
];

for (const [name, { tool, args, input = "", redirection }, status, says, shown] of rows)
  test(`${tool}: ${name}`, () => {
    const command = redirection
      ? ["/bin/bash", ["-c", `set -o pipefail; "$0" "$@" ${redirection}`, programs[tool], ...args]]
      : [programs[tool], args];
    const { status: ended, signal, stdout, stderr } =
      spawnSync(...command, { input, encoding: "utf8", timeout: 20000, killSignal: "SIGKILL", cwd: folder });
    assert.deepEqual([ended, signal], [status, null], stderr);
    assert.match(stderr, says);
    assert.match(stdout, shown ?? (tool === "challenge" ? /^/ : /^$/)); // the cardholder has its request to show
    assert.doesNotMatch(stdout + stderr, steering);
  });

test("each tool tells its version", () => {
  for (const [name, program] of Object.entries(programs)) {
    const { status, stdout } = spawnSync(program, ["--version"], { encoding: "utf8" });
    assert.deepEqual([status, /^(\S+) \d+\.\d+\.\d+\n$/.exec(stdout)?.[1]], [0, `korvane-${name}`]);
  }
});

test("manual page and completion have every option of the help, and are those that the build wrote", () => {
  const ask = (program, ...args) => spawnSync(program, args, { encoding: "utf8" }).stdout;
  const complete = (script, name, ...words) => spawnSync("/bin/bash", ["-c",
    `. ${script}; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _${name.replace("-", "_")}; printf '%s\\n' "\${COMPREPLY[@]}"`, "-", name, ...words],
    { encoding: "utf8", cwd: folder }).stdout.trimEnd().split("\n");
  const written = (tool, kind) => join(process.env.KORVANE_TOOLS, tool, `korvane-${tool}.${kind}`);
  for (const [tool, program] of Object.entries(programs)) {
    const options = ask(program, "--help").match(/^ {2}(-h,)?--[a-z-]+/gm).map((text) => text.trim().replace("-h,", ""));
    const page = readFileSync(written(tool, "1"), "utf8");
    assert.ok(options.length >= 2);
    for (const option of options) assert.ok(page.includes(option.replaceAll("-", "\\-")), option);
    assert.match(page, /^\.TH korvane-[a-z]+ 1 "" "\d/);
    assert.doesNotMatch(page, /^'|^\.(?!TH|SH|SS|TP|B|br|nf|fi)/m, "no line of text is a command");
    const offered = complete(written(tool, "bash"), `korvane-${tool}`, "--");
    assert.deepEqual(offered.sort(), options.sort());
    assert.deepEqual([page, readFileSync(written(tool, "bash"), "utf8")], [ask(program, "--manual-page"), ask(program, "--bash-completion")]);
  }
  const script = written("challenge", "bash");
  assert.deepEqual(complete(script, "korvane-challenge", "--algorithm", "E"), ["EC"]);
  assert.deepEqual(complete(script, "korvane-challenge", "--ca", "=", "pki/tls-root.p"), ["pki/tls-root.pem"]);
  assert.deepEqual(complete(script, "korvane-challenge", "--locale", ""), [""]);
  assert.deepEqual(complete(written("acs", "bash"), "korvane-acs", "--pki", "pk"), ["pki"]);
  assert.deepEqual(complete(written("jose", "bash"), "korvane-jose", "in"), ["inspect"]);
});
