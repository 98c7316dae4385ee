// Both sides give a key the same name.

import { strict as assert } from "node:assert";
import { after, before, test } from "node:test";

import { calculateJwkThumbprint } from "jose";

import { Batch } from "./Batch.mjs";
import { makePair, makeShared } from "./Keys.mjs";

const rows = [
  { name: "RSA", keys: makePair("rsa", { modulusLength: 2048 }) },
  { name: "P-256", keys: makePair("ec", { namedCurve: "P-256" }) },
  { name: "P-384", keys: makePair("ec", { namedCurve: "P-384" }) },
  { name: "P-521", keys: makePair("ec", { namedCurve: "P-521" }) },
  { name: "oct", keys: makeShared(32) },
];

let korvane;
before(() => { korvane = new Batch(); });
after(() => korvane.close());

for (const { name, keys } of rows)
  for (const [half, key] of Object.entries(keys))
    test(`the thumbprints of an ${name} key agree (${half})`, async () => {
      const { thumbprint } = await korvane.perform({ op: "jwk.thumbprint", key });
      assert.equal(thumbprint, await calculateJwkThumbprint(key, "sha256"));
    });
