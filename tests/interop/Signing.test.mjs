// What one side signs, the other verifies; what was changed on the way, neither does.

import { strict as assert } from "node:assert";
import { after, before, suite, test } from "node:test";

import { CompactSign, compactVerify } from "jose";

import { Batch, base64url } from "./Batch.mjs";
import { imported, makePair, tampered } from "./Keys.mjs";

const rsa = makePair("rsa", { modulusLength: 2048 });
const rows = [
  { alg: "RS256", keys: rsa },
  { alg: "PS256", keys: rsa },
  { alg: "ES256", keys: makePair("ec", { namedCurve: "P-256" }) },
  { alg: "ES384", keys: makePair("ec", { namedCurve: "P-384" }) },
  { alg: "ES512", keys: makePair("ec", { namedCurve: "P-521" }) },
];
const parts = [{ name: "payload", index: 1 }, { name: "signature", index: 2 }];
const text = "A payload: \u00fc\u00f6\u00e4";

let korvane;
before(() => { korvane = new Batch(); });
after(() => korvane.close());

async function signWithKorvane({ alg, ...header }, keys) {
  return (await korvane.perform(
    { op: "jws.sign", alg, key: keys.privateKey, payload: base64url(text), header })).jws;
}

async function signWithJose(header, keys) {
  const { privateKey } = await imported(keys, header.alg);
  return new CompactSign(Buffer.from(text)).setProtectedHeader(header).sign(privateKey);
}

const verifyWithKorvane = (jws, keys) => korvane.ask({ op: "jws.verify", jws, key: keys.publicKey });

async function verifyWithJose(jws, keys, { alg }) {
  const { publicKey } = await imported(keys, alg);
  return compactVerify(jws, publicKey, { algorithms: [alg] });
}

for (const { alg, keys } of rows)
  suite(alg, () => {
    const header = { alg, kid: "k\u00e9y/1", serial: 1, flags: [true, null, { deep: 1.5 }] };

    test("Korvane signs, jose verifies", async () => {
      const verified = await verifyWithJose(await signWithKorvane(header, keys), keys, header);
      assert.equal(Buffer.from(verified.payload).toString(), text);
      assert.deepEqual(verified.protectedHeader, header);
    });

    test("jose signs, Korvane verifies", async () => {
      const verified = await verifyWithKorvane(await signWithJose(header, keys), keys);
      assert.deepEqual(verified, { ok: true, payload: base64url(text), header });
    });

    for (const { name, index } of parts) {
      test(`jose refuses Korvane's message with another ${name}`, async () => {
        const jws = tampered(await signWithKorvane(header, keys), index);
        await assert.rejects(verifyWithJose(jws, keys, header), { code: "ERR_JWS_SIGNATURE_VERIFICATION_FAILED" });
      });

      test(`Korvane refuses jose's message with another ${name}`, async () => {
        const answer = await verifyWithKorvane(tampered(await signWithJose(header, keys), index), keys);
        assert.equal(answer.error, "JOSEError.signatureInvalid");
      });
    }
  });
