// The example in C as its user runs it: a payment from a terminal against the test ACS.

import { strict as assert } from "node:assert";
import { test } from "node:test";

import { withAcs } from "../../tools/acs/Acs.mjs";
import { Cardholder } from "../../tools/challenge/Cardholder.mjs";

const begin = async (acs) => {
  const { listening } = acs;
  const cardholder = new Cardholder([listening.directoryServerID, listening.deviceDataEC, listening.directoryServerRoot,
    listening.tlsRoot], process.env.KORVANE_PAYMENT);
  const request = await cardholder.next();
  const { deviceData, ...values } = JSON.parse((await acs.post("/authenticate", JSON.stringify(request))).body);
  assert.equal(deviceData.DV, "1.4");
  cardholder.write(values);
  return cardholder;
};

const expectEnd = async (cardholder, members) => {
  const event = await cardholder.next();
  assert.deepEqual({ ...event, ...members }, event);
  assert.equal(await cardholder.ended(), 0, cardholder.log);
};

for (const [scenario, uiType, action] of [["text", "01", { action: "submit", data: "1234" }],
  ["singleSelect", "02", { action: "select", keys: ["phone"] }]])
  test(`a challenge by ${scenario}, with lines that are none before`, () => withAcs(scenario, async (acs) => {
    const cardholder = await begin(acs);
    assert.equal((await cardholder.next()).uiType, uiType);
    for (const line of ["{", "[]", { action: "jump" }, { action: "continue" }, { action: "rotate", to: "LANDSCAPE" }])
      cardholder.write(line);
    assert.equal((await cardholder.next()).orientation, "LANDSCAPE");
    cardholder.write(action);
    await expectEnd(cardholder, { event: "completed", transactionStatus: "Y" });
    for (const complaint of ["not one JSON object. Byte", "not one JSON object.\n", "is not known: jump", "no such control"])
      assert.ok(cardholder.log.includes(complaint), complaint);
  }));

test("the end of the input cancels", () => withAcs("oob", async (acs) => {
  const cardholder = await begin(acs);
  assert.equal((await cardholder.next()).uiType, "04");
  cardholder.child.stdin.end();
  await expectEnd(cardholder, { event: "cancelled" });
}));

test("an ACS that nobody vouches for is an ending too", () => withAcs("faultForeignRoot", async (acs) => {
  await expectEnd(await begin(acs), { event: "runtimeError" });
}));
