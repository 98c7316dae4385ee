// The tool as people and scripts meet it: its operations, what it says to bad input, and its exit codes.

import { strict as assert } from "node:assert";
import { spawnSync } from "node:child_process";
import * as crypto from "node:crypto";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import { after, before, suite, test } from "node:test";

import { Batch, base64url } from "./Batch.mjs";

const program = process.env.KORVANE_JOSE;
const read = (...path) => readFileSync(join(process.env.KORVANE_TESTS, ...path), "utf8");
const vectors = (name) => JSON.parse(read("vectors", "rfc", `${name}.json`)).vectors;
const vector = (file, name) => vectors(file).find((row) => row.name === name);
const hexToBase64url = (hex) => Buffer.from(hex, "hex").toString("base64url");
const run = (...args) => spawnSync(program, args, { encoding: "utf8", input: "" });

const jwkOf = (key) => key.export({ format: "jwk" });
const pemOf = (key) => ({ pem: key.export({ format: "pem", type: key.type === "private" ? "pkcs8" : "spki" }) });
const rsa = crypto.generateKeyPairSync("rsa", { modulusLength: 2048 });
const ec = Object.fromEntries(
  ["P-256", "P-384", "P-521"].map((namedCurve) => [namedCurve, crypto.generateKeyPairSync("ec", { namedCurve })]));
const oct = { kty: "oct", k: base64url(crypto.randomBytes(32)) };
const payload = base64url("a payload");
const sealing = { op: "jwe.encrypt", alg: "dir", enc: "A128CBC-HS256", key: oct, payload };

let batch;
before(() => { batch = new Batch(); });
after(async () => assert.equal(await batch.close(), 1, "the exit code, since lines were refused"));

suite("published results", () => {
  test("ecdh and concatKdf agree with RFC 7518 appendix C", async () => {
    const row = vector("rfc7518", "C");
    const { z } = await batch.perform({ op: "ecdh", private: row.ephemeral_jwk_alice, public: row.static_jwk_bob });
    assert.equal(z, hexToBase64url(row.z_hex));
    const { key } = await batch.perform({
      op: "concatKdf", z, keyDataLen: row.keydatalen_bits, algorithmID: base64url(row.algorithm_id_text),
      partyUInfo: base64url(row.party_u_info_text), partyVInfo: base64url(row.party_v_info_text),
      suppPubInfo: hexToBase64url(row.supp_pub_info_hex) });
    assert.equal(key, row.derived_key_b64u);
  });

  test("the thumbprint is that of RFC 7638 section 3.1", async () => {
    const row = vector("rfc7638", "3.1");
    const { thumbprint } = await batch.perform({ op: "jwk.thumbprint", key: row.jwk });
    assert.equal(thumbprint, row.thumbprint);
  });

  for (const row of vectors("rfc7515"))
    test(`the signature of RFC 7515 appendix ${row.name} verifies, bare and as a JWS`, async () => {
      const bare = { op: "signature.verify", alg: row.alg, key: row.jwk, input: base64url(row.signing_input),
        signature: hexToBase64url(row.signature_hex) };
      assert.equal((await batch.perform(bare)).valid, true);
      assert.equal((await batch.perform({ ...bare, input: base64url("another input") })).valid, false);
      const { d, p, q, dp, dq, qi, ...key } = row.jwk;
      const answer = await batch.perform({ op: "jws.verify", jws: row.compact, key });
      assert.deepEqual(answer, { payload: hexToBase64url(row.payload_hex), header: { alg: row.alg } });
    });
});

suite("keys", () => {
  const thumbprintOf = ({ crv, e, kty, n, x, y }) =>
    crypto.createHash("sha256").update(JSON.stringify({ crv, e, kty, n, x, y })).digest("base64url");
  const certificate = new crypto.X509Certificate(read("Platform", "keys", "certificate.pem"));
  const forms = [
    { name: "an RSA private JWK", key: jwkOf(rsa.privateKey), of: rsa.publicKey },
    { name: "an RSA private PEM text", key: pemOf(rsa.privateKey), of: rsa.publicKey },
    { name: "an RSA public PEM text", key: pemOf(rsa.publicKey), of: rsa.publicKey },
    { name: "an EC private PEM text", key: pemOf(ec["P-384"].privateKey), of: ec["P-384"].publicKey },
    { name: "an EC public PEM text", key: pemOf(ec["P-521"].publicKey), of: ec["P-521"].publicKey },
    { name: "a certificate", key: { cert: certificate.raw.toString("base64") }, of: certificate.publicKey },
  ];
  for (const { name, key, of } of forms)
    test(`${name} is read`, async () => {
      const { thumbprint } = await batch.perform({ op: "jwk.thumbprint", key });
      assert.equal(thumbprint, thumbprintOf(jwkOf(of)));
    });

  const pairs = [
    { alg: "RS512", pair: rsa, options: {} },
    { alg: "PS384", pair: rsa, options: { padding: crypto.constants.RSA_PKCS1_PSS_PADDING, saltLength: 48 } },
    ...[["ES256", "P-256"], ["ES384", "P-384"], ["ES512", "P-521"]].map(
      ([alg, curve]) => ({ alg, pair: ec[curve], options: { dsaEncoding: "ieee-p1363" } })),
  ];
  for (const { alg, pair, options } of pairs)
    for (const [form, write] of [["JWKs", jwkOf], ["PEM texts", pemOf]])
      test(`${alg} works with ${form}`, async () => {
        const digest = `sha${alg.slice(2)}`;
        const { jws } = await batch.perform({ op: "jws.sign", alg, key: write(pair.privateKey), payload });
        const [input, signature] = [jws.slice(0, jws.lastIndexOf(".")), jws.slice(jws.lastIndexOf(".") + 1)];
        const key = { key: pair.publicKey, ...options };
        assert.ok(crypto.verify(digest, Buffer.from(input), key, Buffer.from(signature, "base64url")));
        const other = crypto.sign(digest, Buffer.from("text"), { key: pair.privateKey, ...options });
        const { valid } = await batch.perform({ op: "signature.verify", alg, key: write(pair.publicKey),
          input: base64url("text"), signature: base64url(other) });
        assert.ok(valid);
      });

  const recipients = [
    { alg: "ECDH-ES", pair: ec["P-256"] }, { alg: "ECDH-ES+A192KW", pair: ec["P-521"] },
    { alg: "RSA1_5", pair: rsa }, { alg: "RSA-OAEP-256", pair: rsa },
  ];
  for (const { alg, pair } of recipients)
    test(`${alg} seals for a JWK and opens with a PEM text`, async () => {
      const header = { zip: "DEF", kid: "k\u00e9y", apu: "U", apv: "V" };
      const { jwe } = await batch.perform({ ...sealing, alg, key: jwkOf(pair.publicKey), header });
      const opened = await batch.perform({ op: "jwe.decrypt", jwe, key: pemOf(pair.privateKey) });
      const { epk, ...members } = opened.header;
      assert.equal(opened.payload, payload);
      assert.deepEqual(members, { alg, enc: sealing.enc, ...header });
      assert.equal(epk !== undefined, alg.startsWith("ECDH"));
    });
});

/** A JWS whose numbers are short, and genuine by all but the curve of their key. */
function es512UnderP256() {
  const input = `${base64url('{"alg":"ES512"}')}.eA`;
  const key = { key: ec["P-256"].privateKey, dsaEncoding: "ieee-p1363" };
  const numbers = crypto.sign("sha512", Buffer.from(input), key);
  const long = [numbers.subarray(0, 32), numbers.subarray(32)].map((n) => Buffer.concat([Buffer.alloc(34), n]));
  return `${input}.${base64url(Buffer.concat(long))}`;
}

suite("bad lines are answered by name, and the next line is served", () => {
  const longest = 64 << 20;
  const kdf = { op: "concatKdf", z: "AA", keyDataLen: 256, algorithmID: "", partyUInfo: "", partyVInfo: "",
    suppPubInfo: "" };
  const es256 = { op: "jws.sign", alg: "ES256", key: jwkOf(ec["P-256"].privateKey), payload };
  const rows = [
    { name: "no JSON", line: "{\"op\":", error: "notJSON", says: "JSON object. Byte 7: This is not JSON" },
    { name: "an empty line", line: "", error: "notJSON", says: "JSON object" },
    { name: "an array", line: "[]", error: "notJSON", says: "JSON object" },
    { name: "bytes that are not UTF-8", line: Buffer.from('{"op":"\u00ff"}', "latin1"), error: "notJSON",
      says: "JSON object" },
    { name: "a line of more than 64 MiB", line: JSON.stringify(sealing).padEnd(longest + 1), error: "lineTooLong",
      says: "64 MiB" },
    { name: "no operation", line: {}, error: "missingMember", says: '"op"' },
    { name: "an operation that is a number", line: { op: 1 }, error: "wrongType", says: '"op"' },
    { name: "an unknown operation", line: { op: "jwe.seal" }, error: "unknownOp", says: "jwe.seal" },
    { name: "an unknown member", line: { ...sealing, kid: "1" }, error: "unknownMember", says: '"kid"' },
    { name: "a missing member", line: { ...sealing, enc: undefined }, error: "missingMember", says: '"enc"' },
    { name: "a text in place of a key", line: { ...sealing, key: "k" }, error: "wrongType", says: '"key"' },
    { name: "null in place of a text", line: { ...sealing, payload: null }, error: "wrongType", says: '"payload"' },
    { name: "a header that is an array", line: { ...sealing, header: [] }, error: "wrongType", says: '"header"' },
    { name: "a header with its own alg", line: { ...sealing, header: { alg: "dir" } }, error: "unknownMember",
      says: '"header.alg"' },
    { name: "a payload with padding", line: { ...sealing, payload: "AA==" }, error: "notBase64", says: '"payload"' },
    { name: "an unknown alg", line: { ...sealing, alg: "A128GCMKW" }, error: "unknownAlgorithm", says: '"alg"' },
    { name: "an unknown enc", line: { ...sealing, enc: "A128GCM" }, error: "unknownAlgorithm", says: '"enc"' },
    { name: "a member beside pem", line: { ...sealing, key: { pem: "", kid: "1" } }, error: "unknownMember",
      says: '"key.kid"' },
    { name: "a pem that is no text", line: { ...sealing, key: { pem: 1 } }, error: "wrongType", says: '"key.pem"' },
    { name: "a cert that is no certificate", line: { ...sealing, key: { cert: "AAAA" } }, error: "wrongKey",
      says: '"key.cert"' },
    { name: "a cert in Base64URL", line: { ...sealing, key: { cert: "-_-_" } }, error: "notBase64",
      says: '"key.cert"' },
    { name: "a JWK of unknown type", line: { ...sealing, key: { kty: "OKP" } }, error: "wrongKey", says: '"key"' },
    { name: "a type of key that alg cannot use", line: { ...sealing, key: jwkOf(rsa.publicKey) }, error: "wrongKey",
      says: '"key"' },
    { name: "a public key to open with", error: "wrongKey", says: '"key"',
      line: { op: "jwe.decrypt", jwe: "eyJhbGciOiJSU0EtT0FFUCIsImVuYyI6IkEifQ....", key: jwkOf(rsa.publicKey) } },
    { name: "a JWE whose header has no alg", library: "JOSEError.componentCouldNotBeInitializedFromData",
      line: { op: "jwe.decrypt", jwe: "e30....", key: oct } },
    { name: "a public key to sign with", line: { ...es256, key: jwkOf(ec["P-256"].publicKey) }, error: "wrongKey",
      says: '"key"' },
    { name: "a public PEM text to sign with", line: { ...es256, key: pemOf(rsa.publicKey) }, error: "wrongKey",
      says: '"key"' },
    { name: "a symmetric key to sign with", line: { ...es256, key: oct }, error: "wrongKey", says: '"key"' },
    // A longer or shorter curve than the algorithm's would give a signature that no peer can read.
    { name: "a longer curve than that of alg", line: { ...es256, key: jwkOf(ec["P-384"].privateKey) },
      error: "wrongKey", says: "P-256" },
    { name: "a shorter curve than that of alg", line: { ...es256, alg: "ES512" }, error: "wrongKey", says: "P-521" },
    { name: "ecdh with a public key for a private one", error: "wrongKey", says: '"private"',
      line: { op: "ecdh", private: jwkOf(ec["P-256"].publicKey), public: jwkOf(ec["P-256"].publicKey) } },
    { name: "ecdh with an RSA key", error: "wrongKey", says: '"public"',
      line: { op: "ecdh", private: jwkOf(ec["P-256"].privateKey), public: jwkOf(rsa.publicKey) } },
    { name: "a length below 0", line: { ...kdf, keyDataLen: -1 }, error: "outOfRange", says: '"keyDataLen"' },
    { name: "a length above 65536", line: { ...kdf, keyDataLen: 65537 }, error: "outOfRange", says: "65536" },
    { name: "a length with a fraction", line: { ...kdf, keyDataLen: 1.5 }, error: "wrongType",
      says: '"keyDataLen"' },
    { name: "a JWK without its numbers", line: { ...sealing, key: { kty: "RSA", n: "AQ" } },
      library: "DecodingError.keyNotFound", says: '"e"' },
    { name: "an RSA key with an exponent of 1", library: "JWKError.cannotConvertToSecKeyChildClasses",
      line: { ...sealing, alg: "RSA-OAEP", key: { ...jwkOf(rsa.publicKey), e: "AQ" } } },
    { name: "a genuine ES512 signature under a key of P-256", library: "JOSEError.verifyingFailed",
      line: { op: "jws.verify", jws: es512UnderP256(), key: jwkOf(ec["P-256"].publicKey) } },
    { name: "an RSA key of no modulus", line: { ...sealing, key: { kty: "RSA", n: "", e: "", d: "" } },
      library: "CFError" },
    { name: "a point off its curve", library: "JWKError.cannotConvertToSecKeyChildClasses",
      line: { op: "jws.sign", alg: "ES256", key: { ...es256.key, x: es256.key.y, y: es256.key.x }, payload } },
    { name: "an ES256 signature of 65 bytes", library: "ECError.verifyingFailed", says: "65 bytes long",
      line: { op: "signature.verify", alg: "ES256", key: jwkOf(ec["P-256"].publicKey), input: "",
        signature: base64url(Buffer.alloc(65)) } },
    { name: "keys on two curves", library: "ECError.deriveKeyFail", says: "are different",
      line: { op: "ecdh", private: jwkOf(ec["P-256"].privateKey), public: jwkOf(ec["P-521"].publicKey) } },
  ];
  for (const { name, line, error, library, says } of rows)
    test(name, async () => {
      const answer = await batch.ask(line);
      assert.deepEqual(Object.keys(answer), ["ok", "error", "description"]);
      assert.equal(answer.ok, false);
      assert.equal(answer.error, library ?? `InputError.${error}`);
      assert.ok(answer.description.includes(says ?? ""), `"${answer.description}" does not say ${says}`);
      assert.ok((await batch.perform(sealing)).jwe);
    });

  for (const [keyDataLen, bytes] of [[0, 0], [260, 33], [65536, 8192]])
    test(`a length of ${keyDataLen} bits gives ${bytes} bytes`, async () => {
      const { key } = await batch.perform({ ...kdf, keyDataLen, suppPrivInfo: "AA" });
      assert.equal(Buffer.from(key, "base64url").length, bytes);
    });

  test("a line of 64 MiB is served", async () => {
    assert.ok((await batch.ask(JSON.stringify(sealing).padEnd(longest))).ok);
  });

  test("a last line without an end is answered", async () => {
    const last = new Batch();
    assert.equal((await last.askLast("{}")).error, "InputError.missingMember");
    assert.equal(await last.close(), 1);
  });
});

suite("inspect", () => {
  const header = (members) => base64url(JSON.stringify(members));
  const rows = [
    { name: "a JWE", text: `${header({ alg: "dir", enc: "E" })}..AAAA.AAAAAA.AA`, status: 0,
      says: [/^kind: JWE$/m, /^ {2}"enc": "E"$/m, /^ {2}header +23$/m, /^ {2}encrypted key +0$/m,
        /^ {2}initialization vector +3$/m, /^ {2}ciphertext +4$/m, /^ {2}authentication tag +1$/m] },
    { name: "a JWS whose header plays with the terminal", status: 0,
      text: `${header({ alg: "none", kid: "\u001b[2J\u009b" })}.AAAA.`,
      says: [/^kind: JWS$/m, /^ {2}"kid": "\\u001b\[2J\\u009b"$/m, /^ {2}payload +3$/m, /^ {2}signature +0$/m] },
    { name: "four parts", text: "a.b.c.d", status: 1, says: [/has 4 parts/] },
    { name: "no parts", text: "", status: 1, says: [/has 1 part;/] },
    { name: "a part that is not Base64URL", text: "e30.A.AA", status: 1, says: [/Part 2, the payload,/] },
    { name: "a header that is not JSON", text: "AAAA..", status: 1, says: [/header is not a JSON object/] },
    { name: "a header that is an array", text: `${header([])}..`, status: 1, says: [/header is not a JSON object/] },
    { name: "a JWE without enc", text: `${header({ alg: "dir" })}....`, status: 1, says: [/no "enc"/] },
    { name: "a JWS without alg", text: `${header({ enc: "E" })}..`, status: 1, says: [/no "alg"/] },
  ];
  for (const { name, text, status, says } of rows)
    test(name, () => {
      const result = run("inspect", text);
      assert.equal(result.status, status);
      const [said, silent] = status === 0 ? [result.stdout, result.stderr] : [result.stderr, result.stdout];
      for (const pattern of says) assert.match(said, pattern);
      assert.equal(silent, "");
    });
});

suite("the command line", () => {
  test("--help lists the operations with their members", () => {
    const { status, stdout } = run("--help");
    assert.equal(status, 0);
    assert.match(stdout, /inspect/);
    assert.match(stdout, /jwe\.encrypt alg enc key payload \[header\]/);
  });
  test("no input is a job that is done, and so is a line that is served", () => {
    assert.equal(run().status, 0);
    assert.equal(spawnSync(program, { input: JSON.stringify(sealing) }).status, 0);
  });
});
