// The directory server and the ACS on other implementations: Node agrees on keys, jose opens, signs and seals.

import { strict as assert } from "node:assert";
import * as crypto from "node:crypto";
import { test } from "node:test";

import { CompactEncrypt, CompactSign, compactDecrypt, decodeProtectedHeader } from "jose";

import { Batch } from "./Batch.mjs";
import { deriveKey } from "./Sdk.mjs";

const enc = "A128CBC-HS256";
const codes = (letter, count) =>
  Array.from({ length: count }, (_, index) => `${letter}${String(index + 1).padStart(3, "0")}`);
const parameters = [...codes("C", 15), ...codes("I", 14)];

const privateKey = (pkcs8) =>
  crypto.createPrivateKey({ key: Buffer.from(pkcs8, "base64url"), format: "der", type: "pkcs8" });
const publicKey = ({ kty, crv, x, y }) => crypto.createPublicKey({ key: { kty, crv, x, y }, format: "jwk" });

async function openDeviceData({ deviceData, deviceDataKey, directoryServerID }, algorithm) {
  const own = privateKey(deviceDataKey);
  const { alg, epk } = decodeProtectedHeader(deviceData);
  assert.equal(alg, algorithm === "RSA" ? "RSA-OAEP-256" : "dir");
  const key = algorithm === "RSA" ? own : deriveKey(own, publicKey(epk), directoryServerID);
  const { plaintext } = await compactDecrypt(deviceData, key,
    { keyManagementAlgorithms: [alg], contentEncryptionAlgorithms: [enc] });
  return JSON.parse(Buffer.from(plaintext));
}

/** The ACS: what it sends, and the key that it shares with the application. */
class Acs {
  constructor(request) {
    this.request = request;
    this.ids = { threeDSServerTransID: crypto.randomUUID(), acsTransID: crypto.randomUUID() };
    const pair = crypto.generateKeyPairSync("ec", { namedCurve: "P-256" });
    this.acsEphemPubKey = pair.publicKey.export({ format: "jwk" });
    const sdkEphemPubKey = JSON.parse(request.ephemeralPublic);
    assert.deepEqual(Object.keys(sdkEphemPubKey).sort(), ["crv", "kty", "x", "y"]);
    this.sdkEphemPubKey = sdkEphemPubKey;
    this.key = deriveKey(pair.privateKey, publicKey(sdkEphemPubKey), request.sdkReferenceNum);
  }

  async answer(alg) {
    const { acsEphemPubKey, sdkEphemPubKey } = this;
    const content = { acsEphemPubKey, sdkEphemPubKey, acsURL: "https://acs.example/challenge" };
    const acsSignedContent = await new CompactSign(Buffer.from(JSON.stringify(content)))
      .setProtectedHeader({ alg, x5c: this.request.x5c }).sign(privateKey(this.request.signingKey));
    return { ...this.ids, acsSignedContent };
  }

  async open(jwe) {
    const { plaintext, protectedHeader } = await compactDecrypt(jwe, this.key,
      { keyManagementAlgorithms: ["dir"], contentEncryptionAlgorithms: [enc] });
    return { header: protectedHeader, message: JSON.parse(Buffer.from(plaintext)) };
  }

  seal(message) {
    return new CompactEncrypt(Buffer.from(JSON.stringify(message)))
      .setProtectedHeader({ alg: "dir", enc, kid: this.ids.acsTransID }).encrypt(this.key);
  }

  cRes() {
    const { sdkTransId: sdkTransID, messageVersion } = this.request;
    return { ...this.ids, sdkTransID, messageVersion, messageType: "CRes", acsCounterAtoS: "000",
      challengeCompletionInd: "N", acsUiType: "01", challengeInfoHeader: "Caf\u00e9 \u{1f512}",
      challengeInfoLabel: "Code", challengeInfoText: "Enter it.", submitAuthenticationLabel: "Submit" };
  }
}

for (const [algorithm, signingKey, alg] of [["RSA", "RSA", "PS256"], ["EC", "EC", "ES256"], ["EC", "RSA", "RS256"]])
  test(`${algorithm} device data, ${alg} content: each side opens what the other seals`, async () => {
    const application = new Batch(process.env.KORVANE_APPLICATION);
    const request = await application.ask({ algorithm, signingKey });
    const { DV, DD, DPNA = { none: "" }, ...rest } = await openDeviceData(request, algorithm);
    assert.deepEqual([DV, rest], ["1.4", {}]);
    assert.deepEqual([...Object.keys(DD), ...Object.keys(DPNA)].sort(), parameters);

    const acs = new Acs(request);
    const { cReq } = await application.ask(await acs.answer(alg));
    const { header, message } = await acs.open(cReq);
    assert.deepEqual(header, { alg: "dir", enc, kid: acs.ids.acsTransID });
    assert.deepEqual(message, { ...acs.ids, messageType: "CReq", messageVersion: "2.2.0",
      sdkTransID: request.sdkTransId, sdkCounterStoA: "000" });
    assert.deepEqual(await application.ask({ cRes: await acs.seal(acs.cRes()) }), { header: "Caf\u00e9 \u{1f512}" });
    assert.equal(await application.close(), 0, "the exit code");
  });
