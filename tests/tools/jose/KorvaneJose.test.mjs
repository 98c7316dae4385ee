// The tool as people and scripts meet it: its operations, what it says to bad input, and its exit codes.

import { strict as assert } from "node:assert";
import { spawnSync } from "node:child_process";
import * as crypto from "node:crypto";
import { readFileSync } from "node:fs";
import { after, test } from "node:test";

import { Batch, base64url } from "./Batch.mjs";

const program = process.env.KORVANE_JOSE;
const read = (path) => readFileSync(`${process.env.KORVANE_TESTS}/${path}`, "utf8");
const vector = (file, name) =>
  JSON.parse(read(`vectors/rfc/${file}.json`)).vectors.find((row) => row.name === name);
const hexToBase64url = (hex) => Buffer.from(hex, "hex").toString("base64url");
const run = (...args) => spawnSync(program, args, { encoding: "utf8", input: "" });

const jwkOf = (key) => key.export({ format: "jwk" });
const pemOf = (key) => ({ pem: key.export({ format: "pem", type: key.type === "private" ? "pkcs8" : "spki" }) });
const rsa = crypto.generateKeyPairSync("rsa", { modulusLength: 2048 });
const [p256, p384, p521] =
  ["P-256", "P-384", "P-521"].map((namedCurve) => crypto.generateKeyPairSync("ec", { namedCurve }));
const oct = { kty: "oct", k: base64url(crypto.randomBytes(32)) };
const payload = base64url("a payload");
const sealing = { op: "jwe.encrypt", alg: "dir", enc: "A128CBC-HS256", key: oct, payload };
const signing = { op: "jws.sign", alg: "ES256", key: jwkOf(p256.privateKey), payload };

const batch = new Batch();
after(async () => assert.equal(await batch.close(), 1, "the exit code, since lines were refused"));

test("ecdh and concatKdf give RFC 7518 appendix C, signature.verify takes RFC 7515 appendix A.3", async () => {
  const row = vector("rfc7518", "C");
  const { z } = await batch.perform({ op: "ecdh", private: row.ephemeral_jwk_alice, public: row.static_jwk_bob });
  const { key } = await batch.perform({
    op: "concatKdf", z, keyDataLen: row.keydatalen_bits, algorithmID: base64url(row.algorithm_id_text),
    partyUInfo: base64url(row.party_u_info_text), partyVInfo: base64url(row.party_v_info_text),
    suppPubInfo: hexToBase64url(row.supp_pub_info_hex) });
  assert.equal(key, row.derived_key_b64u);
  const { alg, jwk, signing_input: input, signature_hex: signature } = vector("rfc7515", "A.3");
  for (const [text, valid] of [[input, true], [`${input} `, false]])
    assert.deepEqual({ valid }, await batch.perform(
      { op: "signature.verify", alg, key: jwk, input: base64url(text), signature: hexToBase64url(signature) }));
});

test("keys are read in every form, to seal under the members of a header and to open", async () => {
  const certificate = new crypto.X509Certificate(read("Platform/keys/certificate.pem")).raw.toString("base64");
  const header = { zip: "DEF", kid: "k\u00e9y", apu: "U", apv: "V" };
  for (const [alg, toSeal, toOpen] of [
    ["RSA1_5", jwkOf(rsa.publicKey), pemOf(rsa.privateKey)],
    ["RSA-OAEP", pemOf(rsa.publicKey), jwkOf(rsa.privateKey)],
    ["ECDH-ES+A192KW", jwkOf(p521.publicKey), pemOf(p521.privateKey)],
    ["ECDH-ES", pemOf(p521.publicKey), jwkOf(p521.privateKey)],
    ["ECDH-ES", { cert: certificate }, { pem: read("Platform/keys/p256.pem") }],
  ]) {
    const { jwe } = await batch.perform({ ...sealing, alg, key: toSeal, header });
    const opened = await batch.perform({ op: "jwe.decrypt", jwe, key: toOpen });
    const { epk, ...members } = opened.header;
    assert.deepEqual([opened.payload, members], [payload, { alg, enc: sealing.enc, ...header }]);
  }
});

test("bad lines are answered by name, and the next line is served", async () => {
  const kdf = { op: "concatKdf", z: "AA", keyDataLen: 256, algorithmID: "", partyUInfo: "", partyVInfo: "",
    suppPubInfo: "" };
  const opening = { op: "jwe.decrypt", jwe: "eyJhbGciOiJSU0EtT0FFUCIsImVuYyI6IkEifQ....", key: jwkOf(rsa.publicKey) };
  const longest = JSON.stringify(sealing).padEnd(64 << 20);
  for (const [error, says, line] of [
    ["InputError.notJSON", "JSON object. Byte 7: This is not JSON", "{\"op\":"],
    ["InputError.notJSON", "JSON object", Buffer.from('{"op":"\u00ff"}', "latin1")],
    ["InputError.notJSON", "Byte 1: It begins with a byte order mark.", '\ufeff{"op":"version"}'],
    ["InputError.notJSON", "JSON object", `{"op":${"[".repeat(100000)}${"]".repeat(100000)}}`],
    ["InputError.lineTooLong", "64 MiB", `${longest} `],
    ["InputError.missingMember", '"op"', {}],
    ["InputError.wrongType", '"op"', { op: 1 }],
    ["InputError.unknownOp", "jwe.seal", { op: "jwe.seal" }],
    ["InputError.unknownMember", '"kid"', { ...sealing, kid: "1" }],
    ["InputError.missingMember", '"enc"', { ...sealing, enc: undefined }],
    ["InputError.wrongType", '"key"', { ...sealing, key: "k" }],
    ["InputError.unknownMember", '"header.alg"', { ...sealing, header: { alg: "dir" } }],
    ["InputError.notBase64", '"payload"', { ...sealing, payload: "AA==" }],
    ["InputError.unknownAlgorithm", '"alg"', { ...sealing, alg: "A128GCMKW" }],
    ["InputError.unknownMember", '"key.kid"', { ...sealing, key: { pem: "", kid: "1" } }],
    ["InputError.wrongKey", '"key.cert"', { ...sealing, key: { cert: "AAAA" } }],
    ["InputError.wrongKey", '"key"', { ...sealing, key: { kty: "OKP" } }],
    ["InputError.wrongKey", '"key"', { ...sealing, key: jwkOf(rsa.publicKey) }],
    ["InputError.wrongKey", '"key"', opening],
    ["InputError.wrongKey", '"key"', { ...signing, key: jwkOf(p256.publicKey) }],
    ["InputError.wrongKey", "P-256", { ...signing, key: jwkOf(p384.privateKey) }],
    ["InputError.wrongKey", '"public"', { op: "ecdh", private: signing.key, public: jwkOf(rsa.publicKey) }],
    ["InputError.outOfRange", '"keyDataLen"', { ...kdf, keyDataLen: -1 }],
    ["InputError.outOfRange", "65536", { ...kdf, keyDataLen: 65537 }],
    ["DecodingError.keyNotFound", '"e"', { ...sealing, key: { kty: "RSA", n: "AQ" } }],
    ["JOSEError.componentCouldNotBeInitializedFromData", "", { ...opening, jwe: "e30...." }],
  ]) {
    const { description, ...answer } = await batch.ask(line);
    assert.deepEqual(answer, { ok: false, error }, description);
    assert.ok(description.includes(says), `"${description}" does not say ${says}`);
    assert.ok((await batch.perform(sealing)).jwe);
  }
  assert.ok((await batch.ask(longest)).ok);
  assert.equal((await batch.perform({ ...kdf, keyDataLen: 65536 })).key.length, Math.ceil(8192 * 4 / 3));
});

test("inspect shows the parts of a message, and not what plays with the terminal", () => {
  const header = (members) => base64url(JSON.stringify(members));
  for (const [status, text, ...says] of [
    [0, `${header({ alg: "dir", enc: "E" })}..AAAA.AAAAAA.AA`, /^kind: JWE$/m, /^ {2}"enc": "E"$/m,
      /^ {2}encrypted key +0$/m, /^ {2}ciphertext +4$/m, /^ {2}authentication tag +1$/m],
    [0, `${header({ alg: "none", kid: "\u001b[2J\u009b" })}.AAAA.`, /^ {2}"kid": "\\u001b\[2J\\u009b"$/m],
    [1, "a.b.c.d", /has 4 parts/],
    [1, "e30.A.AA", /Part 2, the payload,/],
    [1, `${header([])}..`, /header is not a JSON object/],
    [1, `${header({ alg: "dir" })}....`, /no "enc"/],
  ]) {
    const result = run("inspect", text);
    const [said, silent] = status === 0 ? [result.stdout, result.stderr] : [result.stderr, result.stdout];
    assert.deepEqual([result.status, silent], [status, ""], text);
    for (const pattern of says) assert.match(said, pattern);
  }
});

test("help, and the exit code of a job with or without a refusal", () => {
  assert.match(run("--help").stdout, /jwe\.encrypt alg enc key payload \[header\]/);
  for (const [input, status] of [["", 0], [JSON.stringify(sealing), 0], ["{}", 1]])
    assert.equal(spawnSync(program, { input }).status, status, input);
});
