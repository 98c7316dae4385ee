// The library's side of a challenge, on Node's own cryptography: what the tool is measured against.

import { strict as assert } from "node:assert";
import * as crypto from "node:crypto";
import { readFileSync } from "node:fs";

const base64url = (bytes) => Buffer.from(bytes).toString("base64url");
const json = (value) => base64url(JSON.stringify(value));
const number = (value) => { const bytes = Buffer.alloc(4); bytes.writeUInt32BE(value); return bytes; };
const jwkOf = ({ kty, crv, x, y }) => ({ kty, crv, x, y });

/** The Concat KDF (RFC 7518 section 4.6.2) with empty algorithm and party U. */
function deriveKey(privateKey, publicKey, partyVInfo) {
  const party = Buffer.from(partyVInfo);
  const z = crypto.diffieHellman({ privateKey, publicKey });
  const info = [number(1), z, number(0), number(0), number(party.length), party, number(256)];
  return crypto.createHash("sha256").update(Buffer.concat(info)).digest();
}

/** AES_128_CBC_HMAC_SHA_256 (RFC 7518 section 5.2.3). */
function tagOf(key, header, iv, ciphertext) {
  const length = Buffer.alloc(8);
  length.writeBigUInt64BE(BigInt(header.length * 8));
  const parts = [Buffer.from(header), iv, ciphertext, length];
  return crypto.createHmac("sha256", key.subarray(0, 16)).update(Buffer.concat(parts)).digest().subarray(0, 16);
}

export function seal(text, key, members, encryptedKey = "") {
  const header = json({ enc: "A128CBC-HS256", ...members });
  const iv = crypto.randomBytes(16);
  const cipher = crypto.createCipheriv("aes-128-cbc", key.subarray(16), iv);
  const ciphertext = Buffer.concat([cipher.update(text), cipher.final()]);
  return [header, base64url(encryptedKey), base64url(iv), base64url(ciphertext),
    base64url(tagOf(key, header, iv, ciphertext))].join(".");
}

export function open(compact, key) {
  const parts = compact.toString().split(".");
  assert.equal(parts.length, 5, `no JWE: ${compact}`);
  const [iv, ciphertext, tag] = parts.slice(2).map((part) => Buffer.from(part, "base64url"));
  assert.deepEqual(tag, tagOf(key, parts[0], iv, ciphertext), "the tag");
  const decipher = crypto.createDecipheriv("aes-128-cbc", key.subarray(16), iv);
  return Buffer.concat([decipher.update(ciphertext), decipher.final()]).toString();
}

const certificate = (file) => new crypto.X509Certificate(readFileSync(file));

export class Sdk {
  constructor(acs, { algorithm = "EC", messageVersion = "2.2.0" } = {}) {
    this.acs = acs;
    this.algorithm = algorithm;
    this.messageVersion = messageVersion;
    this.sdkTransID = crypto.randomUUID();
    this.pair = crypto.generateKeyPairSync("ec", { namedCurve: "P-256" });
    this.referenceNumber = "A-REFERENCE-NUMBER";
    this.counter = 0;
  }

  sealDeviceData(document) {
    const { listening } = this.acs;
    if (this.algorithm === "RSA") {
      const key = crypto.randomBytes(32);
      const options = { key: certificate(listening.deviceDataRSA).publicKey, oaepHash: "sha256",
        padding: crypto.constants.RSA_PKCS1_OAEP_PADDING };
      return seal(JSON.stringify(document), key, { alg: "RSA-OAEP-256" }, crypto.publicEncrypt(options, key));
    }
    const own = crypto.generateKeyPairSync("ec", { namedCurve: "P-256" });
    const key = deriveKey(own.privateKey, certificate(listening.deviceDataEC).publicKey, listening.directoryServerID);
    return seal(JSON.stringify(document), key, { alg: "dir", epk: own.publicKey.export({ format: "jwk" }) });
  }

  request(document = { DV: "1.1", DD: { C001: "Linux" } }) {
    return { deviceData: this.sealDeviceData(document), sdkTransId: this.sdkTransID, sdkAppID: crypto.randomUUID(),
      sdkReferenceNum: this.referenceNumber, ephemeralPublic: this.pair.publicKey.export({ format: "jwk" }),
      messageVersion: this.messageVersion };
  }

  /** Sends the authentication request; takes over what the challenge needs. */
  async authenticate(request = this.request()) {
    const { status, body } = await this.acs.post("/authenticate", JSON.stringify(request));
    assert.equal(status, 200, body.toString());
    this.authentication = JSON.parse(body);
    const [header, payload] = this.authentication.acsSignedContent.split(".");
    this.header = JSON.parse(Buffer.from(header, "base64url"));
    this.content = JSON.parse(Buffer.from(payload, "base64url"));
    const publicKey = crypto.createPublicKey({ key: jwkOf(this.content.acsEphemPubKey), format: "jwk" });
    this.key = deriveKey(this.pair.privateKey, publicKey, this.referenceNumber);
    return this;
  }

  /** Which of chain and signature hold. */
  verifySignedContent() {
    const chain = this.header.x5c.map((text) => new crypto.X509Certificate(Buffer.from(text, "base64")));
    const links = [...chain, certificate(this.acs.listening.directoryServerRoot)];
    const isChainGood = chain.every((link, index) =>
      link.checkIssued(links[index + 1]) && link.verify(links[index + 1].publicKey));
    const [header, payload, signature] = this.authentication.acsSignedContent.split(".");
    const options = { PS256: { padding: crypto.constants.RSA_PKCS1_PSS_PADDING, saltLength: 32 }, RS256: {},
      ES256: { dsaEncoding: "ieee-p1363" } }[this.header.alg];
    const isSignatureGood = crypto.verify("sha256", Buffer.from(`${header}.${payload}`),
      { key: chain[0].publicKey, ...options }, Buffer.from(signature, "base64url"));
    return { isChainGood, isSignatureGood };
  }

  creq(members = {}) {
    const { threeDSServerTransID, acsTransID } = this.authentication;
    return { threeDSServerTransID, acsTransID, messageType: "CReq", messageVersion: this.messageVersion,
      sdkTransID: this.sdkTransID, sdkCounterStoA: `00${this.counter}`, ...members };
  }

  sealed(message, kid = this.authentication.acsTransID) {
    const text = typeof message === "string" ? message : JSON.stringify(message);
    return seal(text, this.key, { alg: "dir", kid });
  }

  /** The answer to a body as it is. */
  postRaw(body) {
    return this.acs.post(this.content.acsURL, body, { "Content-Type": "application/jose;charset=UTF-8" });
  }

  /** The opened answer to a CReq with these members. */
  async post(members) {
    const { status, body } = await this.postRaw(this.sealed(this.creq(members)));
    assert.equal(status, 200);
    ++this.counter;
    return JSON.parse(open(body, this.key));
  }
}
