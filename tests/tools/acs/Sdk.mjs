// The library's side of a challenge, on Node's own cryptography: what the tool is measured against.

import { strict as assert } from "node:assert";
import * as crypto from "node:crypto";
import { readFileSync } from "node:fs";

const base64url = (bytes) => Buffer.from(bytes).toString("base64url");
const number = (value) => { const bytes = Buffer.alloc(4); bytes.writeUInt32BE(value); return bytes; };

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

export function seal(text, key, members) {
  const header = base64url(JSON.stringify({ enc: "A128CBC-HS256", ...members }));
  const iv = crypto.randomBytes(16);
  const cipher = crypto.createCipheriv("aes-128-cbc", key.subarray(16), iv);
  const ciphertext = Buffer.concat([cipher.update(text), cipher.final()]);
  return [header, "", base64url(iv), base64url(ciphertext), base64url(tagOf(key, header, iv, ciphertext))].join(".");
}

export function open(compact, key) {
  const parts = compact.toString().split(".");
  assert.equal(parts.length, 5, `no JWE: ${compact}`);
  const [iv, ciphertext, tag] = parts.slice(2).map((part) => Buffer.from(part, "base64url"));
  assert.deepEqual(tag, tagOf(key, parts[0], iv, ciphertext), "the tag");
  const decipher = crypto.createDecipheriv("aes-128-cbc", key.subarray(16), iv);
  return Buffer.concat([decipher.update(ciphertext), decipher.final()]).toString();
}

export class Sdk {
  constructor(acs) {
    this.acs = acs;
    this.sdkTransID = crypto.randomUUID();
    this.pair = crypto.generateKeyPairSync("ec", { namedCurve: "P-256" });
    this.referenceNumber = "A-REFERENCE-NUMBER";
    this.counter = 0;
  }

  request() {
    const { deviceDataEC, directoryServerID } = this.acs.listening;
    const own = crypto.generateKeyPairSync("ec", { namedCurve: "P-256" });
    const { publicKey } = new crypto.X509Certificate(readFileSync(deviceDataEC));
    const key = deriveKey(own.privateKey, publicKey, directoryServerID);
    const epk = own.publicKey.export({ format: "jwk" });
    return { deviceData: seal('{"DV":"1.1","DD":{"C001":"Linux"}}', key, { alg: "dir", epk }),
      sdkTransId: this.sdkTransID, sdkAppID: crypto.randomUUID(), sdkReferenceNum: this.referenceNumber,
      ephemeralPublic: this.pair.publicKey.export({ format: "jwk" }), messageVersion: "2.2.0" };
  }

  /** Sends the authentication request; takes over what the challenge needs. */
  async authenticate(request = this.request(), headers = {}) {
    const { status, body } = await this.acs.post("/authenticate", JSON.stringify(request), headers);
    assert.equal(status, 200, body.toString());
    this.authentication = JSON.parse(body);
    const [, payload] = this.authentication.acsSignedContent.split(".");
    this.content = JSON.parse(Buffer.from(payload, "base64url"));
    const publicKey = crypto.createPublicKey({ key: this.content.acsEphemPubKey, format: "jwk" });
    this.key = deriveKey(this.pair.privateKey, publicKey, this.referenceNumber);
    return this;
  }

  creq(members = {}) {
    const { threeDSServerTransID, acsTransID } = this.authentication;
    return { threeDSServerTransID, acsTransID, messageType: "CReq", messageVersion: "2.2.0",
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
