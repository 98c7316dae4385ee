// What one side seals, the other opens; what one signs, the other verifies; and both give a key the same name. What
// was changed on the way, Korvane refuses.

import { strict as assert } from "node:assert";
import { generateKeyPairSync, randomBytes } from "node:crypto";
import { after, before, test } from "node:test";

import * as jose from "jose";

import { Batch, base64url } from "./Batch.mjs";

/** A pair of JWKs; the options are those of `generateKeyPairSync`. */
function pair(type, options) {
  const { publicKey, privateKey } = generateKeyPairSync(type, options);
  return { publicKey: publicKey.export({ format: "jwk" }), privateKey: privateKey.export({ format: "jwk" }) };
}

/** A shared key, for both directions. */
function shared(length) {
  const key = { kty: "oct", k: base64url(randomBytes(length)) };
  return { publicKey: key, privateKey: key };
}

const rsa = pair("rsa", { modulusLength: 2048 });
const [p256, p384, p521] = ["P-256", "P-384", "P-521"].map((namedCurve) => pair("ec", { namedCurve }));
const sealed = [["A128CBC-HS256", 32], ["A256CBC-HS512", 64]].flatMap(([enc, length]) => [
  ["dir", shared(length)], ["RSA-OAEP-256", rsa], ["RSA-OAEP", rsa],
  ["A128KW", shared(16)], ["A192KW", shared(24)], ["A256KW", shared(32)],
].map(([alg, keys]) => ({ alg, enc, keys })));
const signed = [["RS256", rsa], ["PS256", rsa], ["ES256", p256], ["ES384", p384], ["ES512", p521]];

// Members of every shape: a header is more than texts.
const further = { kid: "k\u00e9y/1", serial: 1, flags: [true, null, { deep: 1.5 }] };
// One byte more than a block, and letters of more than one byte.
const text = "A payload: \u00fc\u00f6\u00e4";
const bytes = Buffer.from(text);
const payload = base64url(text);

let korvane;
before(() => { korvane = new Batch(); });
after(() => korvane.close());

/** The pair as the package wants it for one algorithm. */
const imported = async (keys, alg) =>
  [await jose.importJWK(keys.publicKey, alg), await jose.importJWK(keys.privateKey, alg)];

/** The messages with one bit of a part flipped, for each part but the header and those that are empty. */
function tampered(compact) {
  const parts = compact.split(".").map((part) => Buffer.from(part, "base64url"));
  return parts.flatMap((part, index) => index === 0 || part.length === 0 ? [] : [parts.with(index,
    Buffer.from(part.map((byte, place) => place === 0 ? byte ^ 1 : byte))).map(base64url).join(".")]);
}

for (const { alg, enc, keys } of sealed)
  test(`${alg} with ${enc}`, async () => {
    const [publicKey, privateKey] = await imported(keys, alg);
    const header = { alg, enc, ...further };
    const { jwe } = await korvane.perform(
      { op: "jwe.encrypt", alg, enc, key: keys.publicKey, payload, header: further });
    const opened = await jose.compactDecrypt(jwe, privateKey,
      { keyManagementAlgorithms: [alg], contentEncryptionAlgorithms: [enc] });
    assert.deepEqual([Buffer.from(opened.plaintext), opened.protectedHeader], [bytes, header]);

    const open = (message) => korvane.ask({ op: "jwe.decrypt", jwe: message, key: keys.privateKey });
    const theirs = await new jose.CompactEncrypt(bytes).setProtectedHeader(header).encrypt(publicKey);
    assert.deepEqual(await open(theirs), { ok: true, payload, header });
    for (const message of tampered(theirs))
      assert.equal((await open(message)).error, "JOSEError.decryptingFailed", message);
  });

for (const [alg, keys] of signed)
  test(alg, async () => {
    const [publicKey, privateKey] = await imported(keys, alg);
    const header = { alg, ...further };
    const { jws } = await korvane.perform({ op: "jws.sign", alg, key: keys.privateKey, payload, header: further });
    const verified = await jose.compactVerify(jws, publicKey, { algorithms: [alg] });
    assert.deepEqual([Buffer.from(verified.payload), verified.protectedHeader], [bytes, header]);

    const verify = (message) => korvane.ask({ op: "jws.verify", jws: message, key: keys.publicKey });
    const theirs = await new jose.CompactSign(bytes).setProtectedHeader(header).sign(privateKey);
    assert.deepEqual(await verify(theirs), { ok: true, payload, header });
    for (const message of tampered(theirs))
      assert.equal((await verify(message)).error, "JOSEError.signatureInvalid", message);
  });

test("thumbprints", async () => {
  for (const keys of [rsa, p256, p384, p521, shared(32)])
    for (const key of Object.values(keys)) {
      const { thumbprint } = await korvane.perform({ op: "jwk.thumbprint", key });
      assert.equal(thumbprint, await jose.calculateJwkThumbprint(key, "sha256"), JSON.stringify(key));
    }
});
