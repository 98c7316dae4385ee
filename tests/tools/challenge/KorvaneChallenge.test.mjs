// Whole challenges by the library's own screens against the test ACS, over real HTTPS.

import { strict as assert } from "node:assert";
import { suite, test } from "node:test";

import { shipped, withAcs } from "../acs/Acs.mjs";
import { Cardholder } from "./Cardholder.mjs";

/** What the ACS received, opened. */
const received = (acs, type) =>
  acs.events.filter(({ event, message }) => event === "received" && message?.messageType === type)
    .map(({ message }) => message);

const expectEnd = async (cardholder, event, ending, code = 0) => {
  assert.deepEqual({ ...event, ...ending }, event);
  assert.equal(await cardholder.ended(), code, cardholder.log);
};
const completed = { event: "completed", transactionStatus: "Y" };
const withChallenge = (scenario, body, options = {}) =>
  withAcs(scenario, async (acs) => body(await Cardholder.begin(acs, options), acs));

/** Most of the time a challenge waits: several run side by side. */
suite("a challenge", { concurrency: 4 }, () => {
  for (const [signature, options] of [["ES256", { algorithm: "EC", messageVersion: "2.1.0" }],
    ["RS256", { algorithm: "RSA", messageVersion: "2.2.0" }]]) // the others have PS256
    test(`a code, wrong, sent anew, and right: ${options.algorithm} under ${options.messageVersion}`, () =>
      withChallenge({ ...shipped("text"), signature }, async (cardholder, acs) => {
        const { first, request, deviceData } = cardholder;
        assert.equal(deviceData.DV, "1.4");
        assert.deepEqual(first, { event: "screen", uiType: "01", orientation: "PORTRAIT",
          header: "Confirm your purchase", label: "Your code",
          text: "We have sent a code to your phone. Enter it here.", warning: false,
          whyLabel: "Why do I see this?", whyText: "Your bank makes sure that it is you.", expandLabel: "Help",
          expandText: "Call the number on the back of your card.", typed: "", submit: "Submit",
          resend: "Send a new code" });
        assert.equal((await cardholder.act("submit")).event, "screen");
        const again = await cardholder.act("submit", { data: "12" });
        assert.deepEqual([again.warning, again.typed], [true, ""]);
        await cardholder.act("resend");
        await expectEnd(cardholder, await cardholder.act("submit", { data: "1234" }),
          { ...completed, sdkTransactionID: request.sdkTransId });
        assert.deepEqual(received(acs, "CReq").map((message) => [message.sdkCounterStoA, message.challengeDataEntry]),
          [["000", undefined], ["001", "12"], ["002", undefined], ["003", "1234"]]);
      }, options));

  test("certificates in the other of their two forms", () => withAcs("text", async (acs) => {
    const swapped = Cardholder.options(acs).map((word) => word.replace(/(der|pem)$/, (form) => (form === "der" ? "pem" : "der")));
    const cardholder = new Cardholder(swapped);
    await cardholder.authenticate(acs);
    assert.equal((await cardholder.next()).event, "screen");
    await expectEnd(cardholder, await cardholder.act("submit", { data: "1234" }), completed);
  }));

  test("one option of three, the wrong one first", () => withChallenge("singleSelect", async (cardholder) => {
    assert.deepEqual(cardholder.first.options,
      [{ phone: "Phone ending in 21" }, { mail: "m***@example.com" }, { letter: "Letter" }]);
    assert.equal((await cardholder.act("select", { keys: ["mail"] })).warning, true);
    await expectEnd(cardholder, await cardholder.act("select", { keys: ["phone"] }), completed);
  }));

  test("no option, and then two that lie far apart in a long list", () => {
    const scenario = shipped("multiSelect");
    scenario.steps[0].screen.challengeSelectInfo = Array.from({ length: 400 }, (_, row) => ({ [`k${row}`]: `${row}` }));
    scenario.steps[0].accepts.challengeDataEntry = ["k3,k398"];
    return withChallenge(scenario, async (cardholder, acs) => {
      assert.deepEqual(cardholder.first.options.at(-1), { k399: "399" });
      assert.equal((await cardholder.act("select", { keys: [] })).warning, true);
      await expectEnd(cardholder, await cardholder.act("select", { keys: ["k398", "k3"] }), completed);
      assert.equal(received(acs, "CReq")[1].challengeNoEntry, "Y");
    });
  });

  test("an approval elsewhere", () => withChallenge("oob", async (cardholder, acs) => {
    assert.equal(cardholder.first.continue, "Continue");
    assert.equal((await cardholder.act("leaveAndReturn")).text, "We have not heard from the app yet.");
    await cardholder.act("continue");
    await expectEnd(cardholder, await cardholder.act("continue"), completed);
    assert.equal(received(acs, "CReq")[0].threeDSRequestorAppURL, "checkout://return");
  }));

  test("a page with a form", () => withChallenge("html", async (cardholder) => {
    assert.match(cardholder.first.html, /^<!DOCTYPE html>/);
    const url = "https://emv3ds/challenge";
    assert.equal((await cardholder.act("navigate", { url: "mailto:a@example.com" })).event, "screen");
    assert.equal((await cardholder.act("navigate", { url, method: "POST", body: "code=1" })).uiType, "05");
    await expectEnd(cardholder, await cardholder.act("navigate", { url: `${url}?code=1234` }), completed);
  }));

  test("a choice, then a code and an answer about trust", () => withChallenge("twoSteps", async (cardholder, acs) => {
    const code = await cardholder.act("select", { keys: ["phone"] });
    assert.equal(code.whitelisting, "Trust this merchant from now on?");
    await expectEnd(cardholder, await cardholder.act("submit", { data: "1234", whitelisting: true }), completed);
    assert.equal(received(acs, "CReq")[2].whitelistingDataEntry, "Y");
  }));

  test("letters, capitals, symbols and what no key has, on a device that is turned there and back", () => {
    const scenario = shipped("text");
    scenario.steps[0].accepts.challengeDataEntry = ["aB3 $Zz[9]\u00e9"];
    return withChallenge(scenario, async (cardholder) => {
      assert.equal((await cardholder.act("type", { data: "aB3 " })).typed, "aB3 ");
      const across = await cardholder.act("rotate", { to: "LANDSCAPE" });
      assert.deepEqual([across.orientation, across.typed], ["LANDSCAPE", "aB3 "]);
      await cardholder.act("type", { data: "$Zz" });
      const upright = await cardholder.act("rotate", { to: "PORTRAIT" });
      assert.deepEqual([upright.orientation, upright.typed], ["PORTRAIT", "aB3 $Zz"]);
      await expectEnd(cardholder, await cardholder.act("submit", { data: "[9]\u00e9" }), completed);
    });
  });

  for (const isByInput of [false, true])
    test(`cancelled by the ${isByInput ? "end of the input" : "button"}, when the ACS has answered`, () =>
      withChallenge({ ...shipped("text"), failure: { fault: { name: "slowAnswer", seconds: 1 } } }, async (cardholder, acs) => {
        const begin = performance.now();
        if (isByInput) cardholder.child.stdin.end();
        else cardholder.write({ action: "cancel" });
        await expectEnd(cardholder, await cardholder.next(), { event: "cancelled" });
        assert.ok(performance.now() - begin >= 1000);
        assert.equal(received(acs, "CReq")[1].challengeCancel, "01");
      }));

  test("timed out", () => withChallenge("text", (cardholder) =>
    expectEnd(cardholder, cardholder.first, { event: "timedout" }), { timeout: 0 }));

  for (const [scenario, reason] of [["faultForeignRoot", "SecTrust cert chain validation fail."],
    ["faultBadSignature", "The operation couldn\u2019t be completed. (Korvane.JOSEError error 9.)"]])
    test(scenario, () => withChallenge(scenario, async (cardholder, acs) => {
      await expectEnd(cardholder, cardholder.first,
        { event: "runtimeError", errorCode: "-1", errorMessage: `Can not verification AcsSignedContent: ${reason}` });
      assert.equal(received(acs, "Erro")[0].errorCode, "302");
    }));

  test("a version that there is not", () => withAcs("text", async (acs) => {
    const cardholder = new Cardholder(Cardholder.options(acs, { messageVersion: "2.3.0" }));
    await expectEnd(cardholder, await cardholder.next(), { event: "sdkError", kind: "InvalidInputException",
      message: "Message version 2.3.0 not supported" }, 1);
  }));

  const protocol = (errorCode, errorDetails) => ({ event: "protocolError", errorCode, errorDetails });
  const faults = [
    ["wrongCounter", protocol("302", "acsCounterAtoS"), ["302"]],
    ["http500", protocol("101", "JWE parse error"), ["101"]],
    ["plainErro", { event: "protocolError", errorCode: "404" }, []],
    ["connectionClosed", { event: "runtimeError", errorCode: "-1" }, []],
    ["noAnswer", { event: "error", message: "The screens have gone and the library told no ending." }, ["101"], 1],
  ];
  for (const [name, ending, erros, code = 0] of faults)
    test(`${name} after the first screen`, () => {
      const first = { screen: shipped("oob").steps[0].screen, accepts: { oobContinue: [true] } };
      return withChallenge({ steps: [first, { ...first, fault: { name } }] }, async (cardholder, acs) => {
        await expectEnd(cardholder, await cardholder.act("continue"), ending, code);
        assert.deepEqual(received(acs, "Erro").map(({ errorCode }) => errorCode), erros);
        assert.equal(received(acs, "CReq").length, 2, "nothing is sent twice");
      });
    });

  test("lines that cannot be served are answered, and the challenge stands", () => withAcs("text", async (acs) => {
    const cardholder = new Cardholder(Cardholder.options(acs));
    cardholder.write("{");
    cardholder.write({ acsTransId: "1" });
    await cardholder.authenticate(acs);
    const error = (message) => ({ event: "error", message });
    assert.deepEqual(await cardholder.next(), error("The line is not one JSON object. Byte 2: This is not JSON."));
    assert.deepEqual(await cardholder.next(), error("\"acsTransId\" is not known here."));
    assert.equal((await cardholder.next()).event, "screen");
    const rows = [
      ["[]", "The line is not one JSON object."],
      [{ data: "1" }, "\"action\" is missing or no string."],
      [{ action: "fly" }, "\"action\" is not known: fly"],
      [{ action: "submit", whitelisting: "yes" }, "\"whitelisting\" must be true or false."],
      [{ action: "submit", data: "1", whitelisting: true }, "This screen does not ask about whitelisting."],
      [{ action: "select", keys: ["a"] }, "This screen has no such control."],
      [{ action: "rotate", to: "UP" }, "\"to\" must be PORTRAIT or LANDSCAPE."],
      [{ action: "cancel", now: true }, "\"now\" is not known here."],
      ["x".repeat(2 ** 20 + 1), "The line has more than 1 MiB."],
    ];
    for (const [line, message] of rows) {
      cardholder.write(line);
      assert.deepEqual(await cardholder.next(), error(message));
    }
    assert.equal((await cardholder.act("leaveAndReturn")).event, "screen");
    await expectEnd(cardholder, await cardholder.act("submit", { data: "1234" }), completed);
  }));
});
