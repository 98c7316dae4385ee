// The tool as the library and the people who integrate meet it: whole challenges, faults on the wire, rubbish, its end.

import { strict as assert } from "node:assert";
import { spawnSync } from "node:child_process";
import * as crypto from "node:crypto";
import { once } from "node:events";
import { existsSync, readFileSync, readdirSync, statSync } from "node:fs";
import { join } from "node:path";
import { after, before, suite, test } from "node:test";
import { setTimeout } from "node:timers/promises";
import { gzipSync } from "node:zlib";

import { Acs, folder, pki, shipped, withAcs, written, writtenFolder } from "./Acs.mjs";
import { Sdk, open, seal } from "./Sdk.mjs";

const run = (...args) => spawnSync(process.env.KORVANE_ACS, args, { encoding: "utf8", timeout: 20000 });
/** Runs with the library's side of a challenge that has been authenticated. */
const withSdk = (scenario, body, ...args) =>
  withAcs(scenario, async (acs) => body(await new Sdk(acs).authenticate(), acs), ...args);

suite("challenges", () => {
  const answer = (entry) => ({ challengeDataEntry: entry });
  const rows = [
    ["text", "Y", [{ challengeDataEntry: "1", challengeCancel: null }, { resendChallenge: "Y" }, { challengeNoEntry: "Y" },
      answer("1234")], ["Y", undefined, "Y", undefined]], // null counts as absent
    ["text", "N", [answer("1"), answer("2"), answer("3")], ["Y", "Y", undefined]],
    ["finalAtOnce", "Y", [], []],
  ];
  for (const [name, ends, answers, warnings] of rows)
    test(`${name} ends with ${ends} after ${answers.length} answers`, () => withSdk(name, async (sdk) => {
      const { threeDSServerTransID, acsTransID } = sdk.authentication;
      const common = { threeDSServerTransID, acsTransID, sdkTransID: sdk.sdkTransID, messageType: "CRes", messageVersion: "2.2.0" };
      const messages = [await sdk.post()];
      for (const members of answers) messages.push(await sdk.post(members));
      assert.deepEqual(messages.slice(1).map((message) => message.challengeInfoTextIndicator), warnings);
      const last = { ...common, acsCounterAtoS: `00${answers.length}`, challengeCompletionInd: "Y", transStatus: ends };
      assert.deepEqual(messages.pop(), last);
      for (const message of messages) assert.deepEqual({ ...message, ...common, challengeCompletionInd: "N" }, message);
    }));

  test("a field of the request names its scenario", () => withAcs("text", async (acs) => {
    const field = { "Korvane-Scenario": "own" };
    const own = await new Sdk(acs).authenticate(undefined, field);
    assert.equal((await own.post()).acsUiType, "02");
    assert.equal((await (await new Sdk(acs).authenticate()).post()).acsUiType, "01");
    const { status, body } = await acs.post("/authenticate", "", { "Korvane-Scenario": "none" });
    assert.deepEqual([status, body.toString().slice(0, 46)], [400, "There is no scenario of this name: none. There"]);
  }, "--scenarios", writtenFolder({ "own.json": JSON.stringify(shipped("singleSelect")) })));

  test("64 challenges at once keep apart", () => withAcs("text", async (acs) => {
    const sdks = await Promise.all(Array.from({ length: 64 }, () => new Sdk(acs).authenticate()));
    await Promise.all(sdks.map((sdk) => sdk.post()));
    const ends = await Promise.all(sdks.map((sdk, index) => sdk.post(answer(index % 3 ? "1234" : "0"))));
    ends.forEach((end, index) => assert.deepEqual([end.sdkTransID, end.transStatus],
      [sdks[index].sdkTransID, index % 3 ? "Y" : undefined]));
  }));

  test("the log has every message, opened, on stdout and in the file", () => {
    const log = written("");
    return withSdk("text", async (sdk, acs) => {
      const entry = "\u009b2J\u202e\u007f\u00e9";
      await sdk.post(answer(entry));
      await acs.event(({ sealed }) => sealed);
      const [, request, answered, creq, cres] = acs.events;
      assert.deepEqual(request.message.deviceData, sdk.authentication.deviceData);
      assert.equal(answered.message.acsTransID, sdk.authentication.acsTransID);
      assert.deepEqual(creq.message, sdk.creq({ sdkCounterStoA: "000", challengeDataEntry: entry }));
      assert.deepEqual([cres.event, cres.sealed, cres.message.acsUiType], ["sent", true, "01"]);
      await acs.stop();
      const text = readFileSync(log, "utf8");
      assert.deepEqual(text.trimEnd().split("\n").map((line) => JSON.parse(line)), acs.events);
      assert.ok(text.includes('"\\u009b2J\\u202e\\u007f\u00e9"'), "what steers a terminal is escaped, and no more");
    }, "--log", log);
  });
});

suite("faults", () => {
  const cres = (check) => async (sdk) => check(await sdk.post(), sdk);
  const raw = (check) => async (sdk) => check(await sdk.postRaw(sdk.sealed(sdk.creq())), sdk);
  const rows = {
    MissingField: cres((message) => assert.equal(message.challengeCompletionInd, undefined)),
    BadField: cres((message) => assert.equal(message.challengeInfoTextIndicator, "X")),
    CriticalExtension: cres(({ messageExtension: [extension] }) =>
      assert.deepEqual([extension.criticalityIndicator, extension.id], [true, "A999999999-7"])),
    ForeignTransactionID: cres((message, sdk) => assert.notEqual(message.acsTransID, sdk.authentication.acsTransID)),
    RepeatedKey: raw(({ body }, sdk) => assert.equal(open(body, sdk.key).split('"acsTransID":').length, 3)),
    NotJSON: raw(({ body }, sdk) => {
      assert.match(open(body, sdk.key), /^\{.*"messageType":"CRes".*[^}]$/);
      assert.throws(() => JSON.parse(open(body, sdk.key)));
    }),
    WrongKey: raw(({ body }, sdk) => assert.throws(() => open(body, sdk.key), /the tag/)),
    NotJWE: raw(({ body }) => assert.equal(body.toString().split(".").length, 2)),
    EmptyBody: raw(({ status, body }) => assert.deepEqual([status, body.length], [200, 0])),
    SealedErro: cres(({ messageType, errorComponent, errorCode }) =>
      assert.deepEqual([messageType, errorComponent, errorCode], ["Erro", "A", "402"])),
  };
  for (const [name, check] of Object.entries(rows)) test(name, () => withSdk(`fault${name}`, check));

  test("every scenario that comes with the tool can be read", async () => {
    const names = readdirSync(process.env.KORVANE_SCENARIOS);
    assert.ok(names.length >= 30);
    for (const name of names) await withAcs(name.replace(".json", ""), () => {});
  });
});

suite("the page", () => {
  const tokenOf = async (acs) => (await acs.send("GET", "/")).body.toString().match(/"token" content="([^"]+)"/)[1];

  test("nothing but itself steers the tool or reads its log", () => withAcs("text", async (acs) => {
    const own = { "Korvane-Token": await tokenOf(acs) };
    const port = new URL(acs.url).port;
    const rows = [
      ["itself", { ...own, Origin: acs.url }, 200],
      ["itself by its other name", { ...own, Host: `localhost:${port}`, Origin: `https://localhost:${port}` }, 200],
      ["a page with a token of its own", { "Korvane-Token": "x" }, 403],
      ["another site", { ...own, Origin: "https://evil.example" }, 403],
      ["a page without an origin", { ...own, Origin: "null" }, 403],
      ["another service here", { ...own, Origin: "https://127.0.0.1:1" }, 403],
      ["a name that leads here", { ...own, Host: `evil.example:${port}` }, 403],
    ];
    for (const [name, headers, status] of rows)
      for (const [method, path, body] of [["POST", "/control/hold", "false"], ["GET", "/control/events/0"], ["GET", "/control/log"]])
        assert.equal((await acs.send(method, path, body, headers)).status, status, `${name}: ${path}`);
    assert.equal((await acs.send("GET", "/", undefined, { Host: "evil.example" })).status, 403, "the token stands there");
    const { headers } = await acs.send("GET", "/");
    assert.match(headers["content-security-policy"], /^default-src 'none'; script-src 'self'; .*frame-ancestors 'none'$/);
  }));

  test("it remembers the latest messages, up to 16 MiB", () => withAcs("text", async (acs) => {
    for (let round = 0; round < 24; ++round) await (await new Sdk(acs).authenticate()).post({ filler: "x".repeat(780000) });
    const token = { "Korvane-Token": await tokenOf(acs) };
    const log = (await acs.send("GET", "/control/log", undefined, token)).body;
    assert.ok(log.length > 15 << 20 && log.length <= 16 << 20, `${log.length}`);
    const { oldest, events } = JSON.parse((await acs.send("GET", "/control/events/0", undefined, token)).body);
    const kept = log.toString().trimEnd().split("\n");
    assert.deepEqual([events[0], oldest + kept.length], [JSON.parse(kept[0]), 1 + 24 * 4]);
  }));
});

suite("rubbish", () => {
  let acs;
  before(async () => { acs = await Acs.play("text"); });
  after(async () => assert.equal(await acs.stop("SIGINT"), 0));

  /** Expects an Erro of the ACS that says this: its code, and how its detail begins. */
  const expectErro = ({ body }, says, members = {}) => {
    const message = JSON.parse(body);
    assert.deepEqual({ ...message, messageType: "Erro", errorComponent: "A", ...members }, message);
    assert.ok(`${message.errorCode} ${message.errorDetail}`.startsWith(says), body.toString());
  };

  const request = (change) => (sdk) => JSON.stringify({ ...sdk.request(), ...change });
  const p256 = crypto.generateKeyPairSync("ec", { namedCurve: "P-256" }).publicKey.export({ format: "jwk" });
  const dataUnder = (epk) => request({ deviceData: seal("{}", crypto.randomBytes(32), { alg: "dir", epk }) });
  const requests = [
    ["no JSON", () => "\xff{", "101"],
    ["as many names as there is room for", () => `{"${[...Array(95000).keys()].join('":1,"')}":1}`, "201"],
    ["a depth beyond measure", () => "[".repeat(500000), "101"],
    ["two members missing", request({ sdkAppID: undefined, sdkTransId: undefined }), "201 sdkTransId,sdkAppID"],
    ["a member twice", (sdk) => request({})(sdk).replace("{", '{"sdkAppID":"x",'), "204 sdkAppID"],
    ["device data with an agreement off its curve", dataUnder({ ...p256, x: p256.y }), "302 deviceData: "],
    ["a key off its curve", request({ ephemeralPublic: { ...p256, x: p256.y } }), "203 ephemeralPublic"],
  ];
  for (const [name, body, says] of requests)
    test(`/authenticate: ${name}`, async () => {
      const begin = performance.now();
      const answer = await acs.post("/authenticate", body(new Sdk(acs)));
      assert.ok(performance.now() - begin < 5000);
      assert.equal(answer.status, 400);
      expectErro(answer, says, { errorMessageType: "AReq" });
    });

  const sealed = (change) => (sdk) => sdk.sealed(sdk.creq(change));
  const kidOf = (sdk) => sdk.authentication.acsTransID;
  const other = crypto.randomUUID();
  const bodies = [
    ["a CReq in the clear", (sdk) => JSON.stringify(sdk.creq()), "101"],
    ["another key", (sdk) => seal("{}", crypto.randomBytes(32), { alg: "dir", kid: kidOf(sdk) }), "302"],
    ["another transaction's kid", (sdk) => sdk.sealed(sdk.creq(), other), "301 kid"],
    ["a missing field", sealed({ sdkTransID: undefined }), "201 sdkTransID"],
    ["a field of another type", sealed({ oobContinue: "true" }), "203 oobContinue"],
    ["a field twice", (sdk) => sdk.sealed(JSON.stringify(sdk.creq()).replace("{", '{"acsTransID":"x",')), "204 acsTransID"],
    ["a critical extension",
      sealed({ messageExtension: [{ criticalityIndicator: true, id: "one", name: "n", data: {} }] }), "202 one"],
  ];
  for (const [name, body, says] of bodies)
    test(`/challenge: ${name}`, async () => {
      const sdk = await new Sdk(acs).authenticate();
      const answer = await sdk.postRaw(body(sdk));
      assert.equal(answer.status, 200);
      expectErro(answer, says, { sdkTransID: sdk.sdkTransID });
      expectErro(await sdk.postRaw(sdk.sealed(sdk.creq())), "301 The challenge has ended.");
    });

  const mebibyte = 1024 * 1024;
  for (const path of ["/authenticate", "/challenge/x"])
    test(`${path} reads 1 MiB and refuses a byte more, also in chunks and unpacked`, async () => {
      expectErro(await acs.post(path, "x".repeat(mebibyte)), path === "/authenticate" ? "101 " : "301 ");
      const tooMuch = "x".repeat(mebibyte + 1);
      const bomb = gzipSync(Buffer.alloc(64 * mebibyte));
      for (const [body, headers] of [[tooMuch], [tooMuch, { "Transfer-Encoding": "chunked" }], [bomb, { "Content-Encoding": "gzip" }]])
        assert.equal((await acs.post(path, body, headers)).status, 413);
    });
});

suite("the process", () => {
  test("a signal ends it at once while an answer is withheld", () => withSdk("faultNoAnswer", async (sdk, acs) => {
    const cut = assert.rejects(sdk.postRaw(sdk.sealed(sdk.creq())));
    await acs.event(({ fault }) => fault !== undefined);
    const begin = performance.now();
    assert.equal(await acs.stop("SIGINT"), 0);
    assert.ok(performance.now() - begin < 3000);
    await cut;
  }));

  test("it serves on and ends at a signal although nobody reads its output", () => withAcs("text", async (acs) => {
    acs.lines.close(); // which also stops its stream
    for (let round = 0; round < 4; ++round) await (await new Sdk(acs).authenticate()).post({ filler: "x".repeat(780000) });
    const exit = once(acs.child, "exit");
    acs.child.kill("SIGTERM");
    assert.deepEqual(await Promise.race([exit, setTimeout(10000, "still there", { ref: false })]), [0, null]);
    acs.child.stdout.resume();
  }));

  test("other machines reach it under the name that it is told, but not its page", async () => {
    const acs = await Acs.start(["--pki", join(folder, "exposed"), "--listen", "0.0.0.0:0", "--expose", "127.0.0.2"]);
    assert.match(acs.url, /^https:\/\/127\.0\.0\.2:/);
    const answer = await (await new Sdk(acs).authenticate()).post();
    assert.match(answer.issuerImage.high, /^https:\/\/127\.0\.0\.2:/);
    assert.equal((await acs.send("GET", "/")).status, 403);
    assert.equal(await acs.stop(), 0);
  });

  test("quiet, it says its first line, which is in a file while it serves", () => {
    const ready = written("from another run");
    return withAcs("text", async (acs) => {
      assert.deepEqual({ ...acs.listening, time: undefined }, { ...JSON.parse(readFileSync(ready)), time: undefined });
      await (await new Sdk(acs).authenticate()).post();
      assert.equal(await acs.stop(), 0);
      assert.deepEqual([acs.events.length, existsSync(ready)], [1, false]);
    }, "--quiet", "--ready-file", ready);
  });

  test("the PKI is kept, and its keys are for the owner alone", async () => {
    const names = readdirSync(pki);
    const read = () => names.map((name) => readFileSync(join(pki, name), "latin1"));
    const first = read();
    await withAcs("text", () => {});
    assert.deepEqual([readdirSync(pki), read()], [names, first]);
    const keys = names.filter((name) => name.endsWith(".key"));
    assert.ok(keys.length >= 5);
    for (const name of keys) assert.equal(statSync(join(pki, name)).mode & 0o777, 0o600, name);
  });
});

suite("wrong usage", () => {
  const step = (members) => JSON.stringify({ steps: [{ screen: { acsUiType: "01" }, ...members }] });
  const fault = (name, parameters) => step({ fault: { name, ...parameters } });
  const rows = [
    ["no JSON", '{"steps": [\n  {,\n]}', /:2: This is not JSON/],
    ["a level too many", `["[",\n${"[".repeat(256)}${"]".repeat(256)}\n]`, /:2: This nests deeper than 256/],
    ["a number that overflows", '{"steps": [],\n"attempts": 1e400}', /:2: This number is too large/],
    ["a fault in the wrong place", fault("foreignRoot"), /fault\.name: names no fault of this place; there are wrongCounter/],
    ["a pause without end", fault("slowAnswer", { seconds: 601 }), /seconds: must be a number above 0 and at most 600/],
  ];
  for (const [name, text, says] of rows)
    test(`scenario: ${name}`, () => {
      const file = written(text);
      const { status, stdout, stderr } = run("--pki", pki, "--scenario", file);
      assert.deepEqual([status, stdout], [2, ""]);
      assert.ok(stderr.startsWith(`korvane-acs: ${file}:`), stderr);
      assert.match(stderr, says);
    });

  const checked = (file, status, lines) => {
    const { stdout, ...rest } = run("--check", file);
    const told = stdout.trimEnd().split("\n").map((line) => line.replace(`${file}:`, ""));
    assert.deepEqual([rest.status, told.length], [status, lines.length], stdout);
    lines.forEach((says, index) => assert.ok(told[index].startsWith(says), `${told[index]} for ${says}`));
    return file;
  };
  const endsWith = (code) => `; the library ends the challenge with error ${code}.`;

  test("--check tells all that is wrong with a scenario and all that surely is not meant, by line", () => {
    const texts = '"challengeInfoHeader": "h", "challengeInfoLabel": "l", "challengeInfoText": "t", "submitAuthenticationLabel": "s"';
    const choice = '"challengeSelectInfo": [{"a": "A"}, {"b": "B"}]';
    const file = checked(written(`{ "stops": [],
"steps": [{"screen": {"challengeInfoHeader": "x"}},
{"screen": {"acsUiType": "06"}, "attempts": 2, "passesFrom": 3},
{"screen": {"acsUiType": 1, "whyInfoText": 2}, "accepts": {"oobContinue": ["Y"]}},
{"screen": {"acsUiType": "01", ${texts.replace('"h"', `"${"h".repeat(46)}"`)}}, "accepts": {"oobContinue": [true]}},
{"screen": {"acsUiType": "02", ${texts}, ${choice}}, "accepts": {"challengeDataEntry": ["a", "c"], "whitelistingDataEntry": ["Y"]}},
{"screen": {"acsUiType": "03", ${texts}, ${choice}}, "accepts": {"challengeDataEntry": ["b,a", "a,a"], "challengeNoEntry": ["Y", "N"]}},
{"screen": {"acsUiType": "05", "acsHTML": "<p>"}, "retry": {"acsHTML": ""}, "accepts": {"challengeHTMLDataEntry": ["x"]}}],
"success": {"transStatus": "Z"}, "failure": {"transStatus": 1} }`), 1, [
      "1: stops: is not known here; known are description,",
      `2: warning: steps[0].screen.acsUiType: is missing or empty${endsWith(201)}`,
      "3: steps[1].passesFrom: must be a whole number from 1 to 2.",
      `3: warning: steps[1].screen.acsUiType: has a value that is not allowed${endsWith(203)}`,
      `4: steps[2].screen.acsUiType: "acsUiType" is not a string${endsWith(203)}`,
      `4: steps[2].screen.whyInfoText: "whyInfoText" is not a string${endsWith(203)}`,
      "4: steps[2].accepts.oobContinue[0]: must be true or false.",
      `5: warning: steps[3].screen.challengeInfoHeader: has a value that is not allowed (1 to 45 characters)${endsWith(203)}`,
      "5: warning: steps[3].accepts.oobContinue[0]: is no answer that this screen can give.",
      "6: warning: steps[4].accepts.challengeDataEntry[1]: is no answer",
      "6: warning: steps[4].accepts.whitelistingDataEntry[0]: is no answer",
      "7: warning: steps[5].accepts.challengeDataEntry[1]: is no answer",
      "7: warning: steps[5].accepts.challengeNoEntry[1]: is no answer",
      `8: warning: steps[6].retry.acsHTML: is missing or empty${endsWith(201)}`,
      '8: warning: steps[6].retry: is never shown: "attempts" is 1.',
      "9: warning: success.transStatus: is no status that the library knows",
      "9: failure.transStatus: must be a string.",
    ]);
    const { status, stderr } = run("--pki", pki, "--scenario", file);
    assert.deepEqual([status, stderr.match(/:\d+: /g)], [2, [":1: ", ":3: ", ":4: ", ":4: ", ":4: ", ":9: "]]); // without the warnings
  });

  test("--check tells all that is wrong with a CRes", () => {
    const id = "6f1c9a52-0f3f-4f57-8b5c-0f2f4ea1f2b1";
    const cres = { threeDSServerTransID: id, acsTransID: "x", sdkTransID: id, acsCounterAtoS: "003", challengeCompletionInd: "N",
      messageType: "CRes", messageVersion: "2.2.0" };
    const lines = (members) => JSON.stringify({ ...cres, ...members }, null, 1);
    checked(written(lines({ acsUiType: "06" })), 1, [`3: acsTransID: has a value that is not allowed${endsWith(203)}`,
      `9: acsUiType: has a value that is not allowed${endsWith(203)}`]);
    checked(written(lines({ acsUIType: "01", issuerImage: { medium: "m" }, psImage: 1, sdkTransID: null })), 1, [
      `1: acsUiType: is missing or empty${endsWith(201)}`, `4: sdkTransID: "sdkTransID" is null${endsWith(203)}`,
      '9: warning: acsUIType: is not known here and is ignored; "acsUiType" is known.',
      `10: issuerImage.high: "high" is missing${endsWith(201)}`, `13: psImage: "psImage" is not an object${endsWith(203)}`]);
    checked(written(lines({ acsTransID: id, challengeCompletionInd: "Y", transStatus: "Y" })), 0, [" This CRes is good."]);
  });

  test("--check has nothing against the scenarios that come with the tool but where it is their point", () => {
    const files = readdirSync(process.env.KORVANE_SCENARIOS).map((name) => join(process.env.KORVANE_SCENARIOS, name));
    const { status, stdout } = run("--check", ...files);
    const odd = stdout.trimEnd().split("\n").filter((line) => !line.endsWith(": This scenario is good."));
    assert.deepEqual([status, odd.length], [0, 1]);
    assert.match(odd[0], /statusOnFirstScreen\.json:11: warning: steps\[0\]\.screen\.transStatus: /);
    assert.deepEqual(run("--check", "/dev/null", "absent", files[0]).stdout.split("\n").slice(0, 2),
      ["/dev/null: The file is empty.", "absent: The file cannot be read: No such file or directory."]);
  });
});
