// What one side seals, the other opens; what was changed on the way, neither does.

import { strict as assert } from "node:assert";
import { after, before, suite, test } from "node:test";

import { CompactEncrypt, compactDecrypt } from "jose";

import { Batch, base64url } from "./Batch.mjs";
import { imported, makePair, makeShared, tampered } from "./Keys.mjs";

const rsa = makePair("rsa", { modulusLength: 2048 });
const contents = [{ enc: "A128CBC-HS256", length: 32 }, { enc: "A256CBC-HS512", length: 64 }];
const managements = [
  { alg: "dir", keysFor: ({ length }) => makeShared(length) },
  { alg: "RSA-OAEP-256", keysFor: () => rsa },
  { alg: "RSA-OAEP", keysFor: () => rsa },
  { alg: "A128KW", keysFor: () => makeShared(16) },
  { alg: "A192KW", keysFor: () => makeShared(24) },
  { alg: "A256KW", keysFor: () => makeShared(32) },
];
const parts = ["header", "encrypted key", "initialization vector", "ciphertext", "tag"];
// One byte more than a block, and letters of more than one byte.
// Members of every shape: a header is more than texts.
const further = { kid: "k\u00e9y/1", serial: 1, flags: [true, null, { deep: 1.5 }] };
const text = "A payload: \u00fc\u00f6\u00e4";

let korvane;
before(() => { korvane = new Batch(); });
after(() => korvane.close());

async function sealWithKorvane(header, keys) {
  const { alg, enc, ...rest } = header;
  return (await korvane.perform(
    { op: "jwe.encrypt", alg, enc, key: keys.publicKey, payload: base64url(text), header: rest })).jwe;
}

async function sealWithJose(header, keys) {
  const { publicKey } = await imported(keys, header.alg);
  return new CompactEncrypt(Buffer.from(text)).setProtectedHeader(header).encrypt(publicKey);
}

const openWithKorvane = (jwe, keys) => korvane.ask({ op: "jwe.decrypt", jwe, key: keys.privateKey });

async function openWithJose(jwe, keys, { alg, enc }) {
  const { privateKey } = await imported(keys, alg);
  return compactDecrypt(jwe, privateKey, { keyManagementAlgorithms: [alg], contentEncryptionAlgorithms: [enc] });
}

for (const { alg, keysFor } of managements)
  for (const content of contents)
    suite(`${alg} with ${content.enc}`, () => {
      const keys = keysFor(content);
      const header = { alg, enc: content.enc, ...further };
      const changeable = parts.map((name, index) => ({ name, index }))
        .filter(({ index }) => index > 0 && !(alg === "dir" && index === 1));

      // Several messages of each kind: the second must be as good as the first.
      for (const count of ["first", "second", "third"]) {
        test(`Korvane seals, jose opens: the ${count} message`, async () => {
          const opened = await openWithJose(await sealWithKorvane(header, keys), keys, header);
          assert.equal(Buffer.from(opened.plaintext).toString(), text);
          assert.deepEqual(opened.protectedHeader, header);
        });

        test(`jose seals, Korvane opens: the ${count} message`, async () => {
          const opened = await openWithKorvane(await sealWithJose(header, keys), keys);
          assert.deepEqual(opened, { ok: true, payload: base64url(text), header });
        });
      }

      for (const { name, index } of changeable) {
        test(`jose refuses Korvane's message with another ${name}`, async () => {
          const jwe = tampered(await sealWithKorvane(header, keys), index);
          await assert.rejects(openWithJose(jwe, keys, header), { code: "ERR_JWE_DECRYPTION_FAILED" });
        });

        test(`Korvane refuses jose's message with another ${name}`, async () => {
          const answer = await openWithKorvane(tampered(await sealWithJose(header, keys), index), keys);
          assert.equal(answer.error, "JOSEError.decryptingFailed");
        });
      }
    });
