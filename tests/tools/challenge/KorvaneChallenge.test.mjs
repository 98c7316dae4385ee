// Whole challenges by the library's own screens against the test ACS, over real HTTPS.

import { strict as assert } from "node:assert";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, before, suite, test } from "node:test";

import { Acs } from "../acs/Acs.mjs";
import { Cardholder } from "./Cardholder.mjs";

const folder = mkdtempSync(join(tmpdir(), "korvane-challenge-"));
after(() => rmSync(folder, { recursive: true }));

const pki = join(folder, "pki");
before(async () => (await Acs.start(["--pki", pki])).stop()); // or several at once would make its files
const shipped = (name) => JSON.parse(readFileSync(join(process.env.KORVANE_SCENARIOS, `${name}.json`)));

/** Most of the time a challenge waits: several run side by side. */
const sideBySide = { concurrency: 4 };

let count = 0;
/** Runs against an ACS that plays a scenario; both must end well. */
const withAcs = async (scenario, body) => {
  const path = join(folder, `scenario-${++count}.json`);
  writeFileSync(path, JSON.stringify(typeof scenario === "string" ? shipped(scenario) : scenario));
  const acs = await Acs.start(["--pki", pki, "--scenario", path]);
  try {
    await body(acs);
  } finally {
    assert.equal(await acs.stop(), 0, "the exit code of the ACS");
  }
};

/** What the ACS received, opened. */
const received = (acs, type) =>
  acs.events.filter(({ event, message }) => event === "received" && message?.messageType === type)
    .map(({ message }) => message);

const expectEnd = async (cardholder, event, ending, code = 0) => {
  assert.deepEqual({ ...event, ...ending }, event);
  assert.equal(await cardholder.ended(), code, cardholder.log);
};
const completed = (status) => ({ event: "completed", transactionStatus: status });

suite("the five kinds", sideBySide, () => {
  for (const algorithm of ["EC", "RSA"])
    for (const messageVersion of ["2.1.0", "2.2.0"])
      test(`a code, wrong and then right: ${algorithm} under ${messageVersion}`, () => withAcs("text", async (acs) => {
        const cardholder = await Cardholder.begin(acs, { algorithm, messageVersion });
        const { first, request } = cardholder;
        assert.equal(cardholder.deviceData.DV, "1.4");
        assert.deepEqual(first, { event: "screen", uiType: "01", orientation: "PORTRAIT",
          header: "Confirm your purchase", label: "Your code",
          text: "We have sent a code to your phone. Enter it here.", warning: false,
          whyLabel: "Why do I see this?", whyText: "Your bank makes sure that it is you.", expandLabel: "Help",
          expandText: "Call the number on the back of your card.", typed: "", submit: "Submit",
          resend: "Send a new code" });
        const again = await cardholder.act("submit", { data: "12" });
        assert.equal(again.warning, true);
        assert.equal(again.typed, "");
        await expectEnd(cardholder, await cardholder.act("submit", { data: "1234" }),
          { ...completed("Y"), sdkTransactionID: request.sdkTransId });
        assert.deepEqual(received(acs, "CReq").map(({ sdkCounterStoA }) => sdkCounterStoA), ["000", "001", "002"]);
        assert.equal(received(acs, "CReq")[1].challengeDataEntry, "12");
      }));

  test("certificates in the other of their two forms", () => withAcs("text", async (acs) => {
    const swapped = Cardholder.options(acs).map((word) => word.replace(/(der|pem)$/, (form) => (form === "der" ? "pem" : "der")));
    const cardholder = new Cardholder(swapped);
    await cardholder.authenticate(acs);
    assert.equal((await cardholder.next()).event, "screen");
    await expectEnd(cardholder, await cardholder.act("submit", { data: "1234" }), completed("Y"));
  }));

  test("one option of three, the wrong one first", () => withAcs("singleSelect", async (acs) => {
    const cardholder = await Cardholder.begin(acs);
    assert.deepEqual(cardholder.first.options,
      [{ phone: "Phone ending in 21" }, { mail: "m***@example.com" }, { letter: "Letter" }]);
    assert.equal((await cardholder.act("select", { keys: ["mail"] })).warning, true);
    await expectEnd(cardholder, await cardholder.act("select", { keys: ["phone"] }), completed("Y"));
  }));

  test("several options, and none", () => withAcs("multiSelect", async (acs) => {
    const cardholder = await Cardholder.begin(acs);
    assert.equal((await cardholder.act("select", { keys: [] })).warning, true);
    await expectEnd(cardholder, await cardholder.act("select", { keys: ["mail", "phone"] }), completed("Y"));
    assert.deepEqual(received(acs, "CReq").slice(1).map((message) => [message.challengeNoEntry,
      message.challengeDataEntry]), [["Y", undefined], [undefined, "phone,mail"]]);
  }));

  test("options far down a list of many", () => {
    const scenario = shipped("multiSelect");
    scenario.steps[0].screen.challengeSelectInfo = Array.from({ length: 400 }, (_, row) => ({ [`k${row}`]: `${row}` }));
    scenario.steps[0].accepts.challengeDataEntry = ["k3,k398"];
    return withAcs(scenario, async (acs) => {
      const cardholder = await Cardholder.begin(acs);
      assert.deepEqual(cardholder.first.options.at(-1), { k399: "399" });
      await expectEnd(cardholder, await cardholder.act("select", { keys: ["k398", "k3"] }), completed("Y"));
    });
  });

  test("an approval elsewhere", () => withAcs("oob", async (acs) => {
    const cardholder = await Cardholder.begin(acs);
    assert.equal(cardholder.first.continue, "Continue");
    const back = await cardholder.act("leaveAndReturn");
    assert.equal(back.text, "We have not heard from the app yet.");
    await cardholder.act("continue");
    await expectEnd(cardholder, await cardholder.act("continue"), completed("Y"));
    assert.equal(received(acs, "CReq")[0].threeDSRequestorAppURL, "checkout://return");
  }));

  test("a page with a form", () => withAcs("html", async (acs) => {
    const cardholder = await Cardholder.begin(acs);
    assert.match(cardholder.first.html, /^<!DOCTYPE html>/);
    const url = "https://emv3ds/challenge";
    const aside = await cardholder.act("navigate", { url: "mailto:a@example.com" });
    assert.equal(aside.event, "screen");
    const again = await cardholder.act("navigate", { url, method: "POST", body: "code=1" });
    assert.equal(again.uiType, "05");
    await expectEnd(cardholder, await cardholder.act("navigate", { url: `${url}?code=1234` }), completed("Y"));
  }));

  test("a choice, then a code and an answer about trust", () => withAcs("twoSteps", async (acs) => {
    const cardholder = await Cardholder.begin(acs);
    const code = await cardholder.act("select", { keys: ["phone"] });
    assert.equal(code.whitelisting, "Trust this merchant from now on?");
    await expectEnd(cardholder, await cardholder.act("submit", { data: "1234", whitelisting: true }), completed("Y"));
    assert.equal(received(acs, "CReq")[2].whitelistingDataEntry, "Y");
  }));
});

suite("typing", sideBySide, () => {
  const asking = (accepts, attempts = 3) => {
    const scenario = shipped("text");
    scenario.steps[0].accepts.challengeDataEntry = [accepts];
    scenario.steps[0].attempts = attempts;
    return scenario;
  };

  test("letters, capitals, symbols and what no key has", () => {
    const code = "aB3 $Zz[9]\u00e9";
    return withAcs(asking(code), async (acs) => {
      const cardholder = await Cardholder.begin(acs);
      assert.equal((await cardholder.act("type", { data: code.slice(0, 4) })).typed, code.slice(0, 4));
      await expectEnd(cardholder, await cardholder.act("submit", { data: code.slice(4) }), completed("Y"));
    });
  });

  test("what was typed goes along when the device is turned, there and back", () => withAcs("text", async (acs) => {
    const cardholder = await Cardholder.begin(acs);
    await cardholder.act("type", { data: "12" });
    const across = await cardholder.act("rotate", { to: "LANDSCAPE" });
    assert.deepEqual([across.orientation, across.typed], ["LANDSCAPE", "12"]);
    await cardholder.act("type", { data: "34" });
    const upright = await cardholder.act("rotate", { to: "PORTRAIT" });
    assert.deepEqual([upright.orientation, upright.typed], ["PORTRAIT", "1234"]);
    await expectEnd(cardholder, await cardholder.act("submit"), completed("Y"));
  }));

  test("two resends and ten answers, of which the first is empty", () => withAcs(asking("1234", 12), async (acs) => {
    const cardholder = await Cardholder.begin(acs);
    assert.equal((await cardholder.act("submit")).event, "screen");
    assert.equal(received(acs, "CReq").length, 1, "an empty field sends nothing");
    for (let resends = 0; resends < 2; ++resends) await cardholder.act("resend");
    for (let answers = 0; answers < 7; ++answers) await cardholder.act("submit", { data: "0" });
    await expectEnd(cardholder, await cardholder.act("submit", { data: "1234" }), completed("Y"));
    assert.equal(received(acs, "CReq").at(-1).sdkCounterStoA, "0010");
  }));
});

suite("endings", sideBySide, () => {
  test("cancelled, by the button and by the end of the input", async () => {
    for (const isByInput of [false, true])
      await withAcs("text", async (acs) => {
        const cardholder = await Cardholder.begin(acs);
        if (isByInput) cardholder.endInput();
        else cardholder.write({ action: "cancel" });
        await expectEnd(cardholder, await cardholder.next(), { event: "cancelled" });
        assert.equal(received(acs, "CReq")[1].challengeCancel, "01");
      });
  });

  test("timed out", () => withAcs("text", async (acs) => {
    const cardholder = await Cardholder.begin(acs, { timeout: 0 });
    await expectEnd(cardholder, cardholder.first, { event: "timedout" });
  }));

  test("not authenticated", () => withAcs("text", async (acs) => {
    const cardholder = await Cardholder.begin(acs);
    await cardholder.act("submit", { data: "1" });
    await cardholder.act("submit", { data: "2" });
    await expectEnd(cardholder, await cardholder.act("submit", { data: "3" }), completed("N"));
  }));

  test("content that is signed by somebody else", () => withAcs("faultForeignRoot", async (acs) => {
    const cardholder = await Cardholder.begin(acs);
    await expectEnd(cardholder, cardholder.first, { event: "runtimeError", errorCode: "-1",
      errorMessage: "Can not verification AcsSignedContent: SecTrust cert chain validation fail." });
    assert.equal(received(acs, "Erro")[0].errorCode, "302");
  }));

  test("values that the application lost", () => withAcs("text", async (acs) => {
    const cardholder = await Cardholder.begin(acs, {}, ({ acsSignedContent, ...values }) => values);
    await expectEnd(cardholder, cardholder.first, { event: "runtimeError",
      errorMessage: "Can not get acsURL from AcsSignedContent: InvalidInputException: acsSignedContent is empty." });
  }));

  test("a version that there is not", () => withAcs("text", async (acs) => {
    const cardholder = new Cardholder(Cardholder.options(acs, { messageVersion: "2.3.0" }));
    await expectEnd(cardholder, await cardholder.next(), { event: "sdkError", kind: "InvalidInputException",
      message: "Message version 2.3.0 not supported" }, 1);
  }));
});

suite("faults after the first screen", sideBySide, () => {
  const protocol = (errorCode) => ({ event: "protocolError", errorCode });
  const runtime = { event: "runtimeError", errorCode: "-1" };
  const rows = [
    { name: "wrongCounter", ending: protocol("302"), erro: "302" },
    { name: "repeatedKey", change: { member: "acsTransID" }, ending: protocol("204"), erro: "204" },
    { name: "missingField", change: { member: "acsUiType" }, ending: protocol("201"), erro: "201" },
    { name: "criticalExtension", ending: protocol("202"), erro: "202" },
    { name: "foreignTransactionID", ending: protocol("301"), erro: "301" },
    { name: "wrongKey", ending: protocol("302"), erro: "302" },
    { name: "emptyBody", ending: protocol("101"), erro: "101" },
    { name: "http500", ending: protocol("101"), erro: "101" },
    { name: "plainErro", ending: { event: "protocolError" } },
    { name: "sealedErro", ending: { event: "protocolError" } },
    { name: "connectionClosed", ending: runtime },
    { name: "notJSON", ending: runtime },
    { name: "badField", ending: protocol("203"), erro: "203" },
    { name: "badType", ending: protocol("203"), erro: "203" },
    { name: "missingNestedField", ending: protocol("201"), erro: "201" },
    { name: "unknownType", ending: protocol("101"), erro: "101" },
    { name: "notJWE", ending: protocol("101"), erro: "101" },
    { name: "undecodableErro", ending: { ...runtime,
      errorMessage: "Can not decode Erro from received data." } },
  ];
  const first = { screen: shipped("oob").steps[0].screen, accepts: { oobContinue: [true] } };
  const second = { ...shipped("text").steps[0] };
  const defaults = (name) => shipped(`fault${name[0].toUpperCase()}${name.slice(1)}`).steps[0].fault;

  for (const { name, change, ending, erro } of rows)
    test(name, () => {
      const scenario = { steps: [first, { ...second, fault: { ...defaults(name), ...change } }] };
      return withAcs(scenario, async (acs) => {
        const cardholder = await Cardholder.begin(acs);
        await expectEnd(cardholder, await cardholder.act("continue"), ending);
        assert.deepEqual(received(acs, "Erro").map(({ errorCode }) => errorCode), erro ? [erro] : []);
        assert.equal(received(acs, "CReq").length, 2, "nothing is sent twice");
      });
    });
});

suite("an ACS that is silent for too long after the first screen: the screens go, and no ending is told", sideBySide, () => {
  const rows = [{ fault: { name: "noAnswer" }, erros: ["101"] }, { fault: { name: "slowAnswer", seconds: 11 }, erros: [] }];
  for (const { fault, erros } of rows)
    test(fault.name, () => {
      const step = shipped("oob").steps[0];
      return withAcs({ steps: [{ ...step, attempts: 1, passesFrom: 1 }, { ...step, fault }] }, async (acs) => {
        const cardholder = await Cardholder.begin(acs);
        await expectEnd(cardholder, await cardholder.act("continue"),
          { event: "error", message: "The screens have gone and the library told no ending." }, 1);
        assert.deepEqual(received(acs, "Erro").map(({ errorCode }) => errorCode), erros);
      });
    });
});

suite("lines that cannot be served", () => {
  test("are answered, and the challenge stands", () => withAcs("text", async (acs) => {
    const cardholder = new Cardholder(Cardholder.options(acs));
    const request = await cardholder.next();
    cardholder.write("{");
    cardholder.write({ acsTransId: "1" });
    assert.deepEqual(await cardholder.next(),
      { event: "error", message: "The line is not one JSON object. Byte 2: This is not JSON." });
    assert.deepEqual(await cardholder.next(), { event: "error", message: "\"acsTransId\" is not known here." });
    const { event, ...values } = request;
    const { deviceData, ...answer } = JSON.parse((await acs.post("/authenticate", JSON.stringify(values))).body);
    cardholder.write(answer);
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
      assert.deepEqual(await cardholder.next(), { event: "error", message });
    }
    const screen = await cardholder.act("leaveAndReturn");
    await expectEnd(cardholder, await cardholder.act("submit", { data: "1234" }), completed("Y"));
    assert.equal(screen.event, "screen");
  }));
});
