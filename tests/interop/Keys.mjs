// Keys and messages as both sides take them.

import { generateKeyPairSync, randomBytes } from "node:crypto";

import { importJWK } from "jose";

/** A pair of JWKs; the options are those of `generateKeyPairSync`. */
export function makePair(type, options) {
  const { publicKey, privateKey } = generateKeyPairSync(type, options);
  return { publicKey: publicKey.export({ format: "jwk" }), privateKey: privateKey.export({ format: "jwk" }) };
}

/** A shared key, for both directions. */
export function makeShared(length) {
  const key = { kty: "oct", k: randomBytes(length).toString("base64url") };
  return { publicKey: key, privateKey: key };
}

/** The pair as the other side wants it for one algorithm. */
export async function imported({ publicKey, privateKey }, alg) {
  return { publicKey: await importJWK(publicKey, alg), privateKey: await importJWK(privateKey, alg) };
}

/** The message with one bit of a part flipped. */
export function tampered(compact, index) {
  const parts = compact.split(".").map((part) => Buffer.from(part, "base64url"));
  parts[index][0] ^= 1;
  return parts.map((part) => part.toString("base64url")).join(".");
}
