// The tool as the library and the people who integrate meet it: whole challenges, faults on the wire, rubbish, its end.

import { strict as assert } from "node:assert";
import { spawnSync } from "node:child_process";
import * as crypto from "node:crypto";
import { once } from "node:events";
import { readFileSync, readdirSync, rmSync, statSync } from "node:fs";
import { join } from "node:path";
import { after, before, suite, test } from "node:test";
import { setTimeout } from "node:timers/promises";
import { gzipSync } from "node:zlib";

import { Acs, folder, pki, shipped, withAcs, written } from "./Acs.mjs";
import { Sdk, open, seal } from "./Sdk.mjs";

const run = (...args) => spawnSync(process.env.KORVANE_ACS, args, { encoding: "utf8", timeout: 20000 });
/** Runs with the library's side of a challenge that has been authenticated. */
const withSdk = (scenario, body, ...args) =>
  withAcs(scenario, async (acs) => body(await new Sdk(acs).authenticate(), acs), ...args);

suite("challenges", () => {
  test("two wrong codes, one resent, then the right one", () => withSdk("text", async (sdk) => {
    const { threeDSServerTransID, acsTransID, deviceData } = sdk.authentication;
    assert.deepEqual(deviceData, { DV: "1.1", DD: { C001: "Linux" } });
    const common = { threeDSServerTransID, acsTransID, sdkTransID: sdk.sdkTransID, messageType: "CRes", messageVersion: "2.2.0" };
    const first = await sdk.post();
    assert.deepEqual({ ...first, ...common, acsUiType: "01", acsCounterAtoS: "000", challengeCompletionInd: "N" }, first);
    const wrong = { challengeDataEntry: "1", challengeCancel: null }; // null counts as absent
    assert.equal((await sdk.post(wrong)).challengeInfoTextIndicator, "Y");
    assert.equal((await sdk.post({ resendChallenge: "Y" })).challengeInfoTextIndicator, undefined);
    assert.equal((await sdk.post({ challengeNoEntry: "Y" })).challengeInfoTextIndicator, "Y");
    assert.deepEqual(await sdk.post({ challengeDataEntry: "1234" }),
      { ...common, acsCounterAtoS: "004", challengeCompletionInd: "Y", transStatus: "Y" });
  }));

  const answer = (entry) => ({ challengeDataEntry: entry });
  const rows = [
    ["text", "N", [answer("1"), answer("2"), answer("3")]],
    ["text", "N", [{ challengeCancel: "01" }]],
    ["singleSelect", "Y", [answer("mail"), answer("phone")]],
    ["finalAtOnce", "Y", []],
  ];
  for (const [name, ends, answers] of rows)
    test(`${name} ends with ${ends} after ${answers.length} answers`, () => withSdk(name, async (sdk) => {
      const messages = [await sdk.post()];
      for (const members of answers) messages.push(await sdk.post(members));
      const told = messages.map(({ challengeCompletionInd, transStatus }) => [challengeCompletionInd, transStatus]);
      assert.deepEqual(told, [...answers.map(() => ["N", undefined]), ["Y", ends]]);
    }));

  test("the images of a screen are there", () => withSdk("text", async (sdk, acs) => {
    const { issuerImage, psImage } = await sdk.post();
    for (const url of [...Object.values(issuerImage), ...Object.values(psImage)]) {
      const { status, headers, body } = await acs.send("GET", url);
      assert.deepEqual([status, headers["content-type"]], [200, "image/png"]);
      assert.equal(body.subarray(1, 4).toString(), "PNG");
    }
  }));

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
  const erro = (message, code) => {
    assert.deepEqual([message.messageType, message.errorComponent, message.errorCode], ["Erro", "A", code]);
  };
  const rows = {
    WrongCounter: cres((message) => assert.equal(message.acsCounterAtoS, "001")),
    MissingField: cres((message) => assert.equal(message.challengeCompletionInd, undefined)),
    MissingNestedField: cres((message) => assert.deepEqual(Object.keys(message.issuerImage), ["medium", "high"])),
    BadType: cres((message) => assert.equal(message.challengeInfoText, 7)),
    BadField: cres((message) => assert.equal(message.challengeInfoTextIndicator, "X")),
    UnknownType: cres((message) => assert.equal(message.messageType, "XRes")),
    CriticalExtension: cres(({ messageExtension: [extension] }) =>
      assert.deepEqual([extension.criticalityIndicator, extension.id], [true, "A999999999-7"])),
    ForeignTransactionID: cres((message, sdk) => {
      assert.match(message.acsTransID, /^[0-9a-f-]{36}$/);
      assert.notEqual(message.acsTransID, sdk.authentication.acsTransID);
    }),
    RepeatedKey: raw(({ body }, sdk) => assert.equal(open(body, sdk.key).split('"acsTransID":').length, 3)),
    NotJSON: raw(({ body }, sdk) => {
      assert.match(open(body, sdk.key), /^\{.*"messageType":"CRes".*[^}]$/);
      assert.throws(() => JSON.parse(open(body, sdk.key)));
    }),
    WrongKey: raw(({ body }, sdk) => assert.throws(() => open(body, sdk.key), /the tag/)),
    NotJWE: raw(({ body }) => assert.equal(body.toString().split(".").length, 2)),
    EmptyBody: raw(({ status, body }) => assert.deepEqual([status, body.length], [200, 0])),
    PlainErro: raw(({ body }, sdk) => {
      erro(JSON.parse(body), "404");
      assert.equal(JSON.parse(body).acsTransID, sdk.authentication.acsTransID);
    }),
    UndecodableErro: raw(({ body }) => erro(JSON.parse(body), 101)),
    SealedErro: cres((message) => erro(message, "402")),
    Http500: raw(({ status, body }) => assert.deepEqual([status, body.length > 0], [500, true])),
    ConnectionClosed: (sdk) => assert.rejects(sdk.postRaw(sdk.sealed(sdk.creq()))),
  };
  for (const [name, check] of Object.entries(rows)) test(name, () => withSdk(`fault${name}`, check));

  test("a fault strikes its own step alone, and a slow answer comes after its seconds", () => {
    const two = shipped("twoSteps");
    two.steps[1].fault = { name: "slowAnswer", seconds: 0.3 };
    two.success = { fault: { name: "missingField", member: "transStatus" } };
    return withSdk(two, async (sdk) => {
      assert.equal((await sdk.post()).acsUiType, "02");
      const begin = performance.now();
      assert.equal((await sdk.post({ challengeDataEntry: "mail" })).acsUiType, "01");
      assert.ok(performance.now() - begin >= 300);
      const last = await sdk.post({ challengeDataEntry: "1234" });
      assert.deepEqual([last.challengeCompletionInd, last.transStatus], ["Y", undefined]);
    });
  });
});

suite("rubbish", () => {
  let acs;
  before(async () => { acs = await Acs.play("text"); });
  after(async () => assert.equal(await acs.stop("SIGINT"), 0));

  const erroOf = ({ body }) => {
    const message = JSON.parse(body);
    assert.deepEqual([message.messageType, message.errorComponent], ["Erro", "A"]);
    return message;
  };
  /** What an answer says: "code" or "code detail". */
  const saidBy = ({ errorCode, errorDetail }, expected) =>
    (expected.includes(" ") ? `${errorCode} ${errorDetail}`.slice(0, expected.length) : errorCode);

  const request = (change) => (sdk) => JSON.stringify({ ...sdk.request(), ...change });
  const p256 = crypto.generateKeyPairSync("ec", { namedCurve: "P-256" }).publicKey.export({ format: "jwk" });
  const p384 = crypto.generateKeyPairSync("ec", { namedCurve: "P-384" }).publicKey.export({ format: "jwk" });
  const dataUnder = (epk) => request({ deviceData: seal("{}", crypto.randomBytes(32), { alg: "dir", epk }) });
  const requests = [
    ["no JSON", () => "\xff{", "101"],
    ["a depth beyond measure", () => "[".repeat(500000), "101"],
    ["two members missing", request({ sdkAppID: undefined, sdkTransId: undefined }), "201 sdkTransId,sdkAppID"],
    ["an unknown member", request({ surplus: 1 }), "203 surplus"],
    ["a member twice", (sdk) => request({})(sdk).replace("{", '{"sdkAppID":"x",'), "204 sdkAppID"],
    ["another version", request({ messageVersion: "1.0.2" }), "203 messageVersion"],
    ["an identifier in upper case", request({ sdkTransId: crypto.randomUUID().toUpperCase() }), "203 sdkTransId"],
    ["a member of another type", request({ deviceData: 7 }), "203 deviceData"],
    ["device data under another key", dataUnder(p256), "302 deviceData: "],
    ["device data with an agreement off its curve", dataUnder({ ...p256, x: p256.y }), "302 deviceData: "],
    ["a key on another curve", request({ ephemeralPublic: p384 }), "203 ephemeralPublic"],
    ["a key off its curve", request({ ephemeralPublic: { ...p256, x: p256.y } }), "203 ephemeralPublic"],
    ["a key that is no JWK", request({ ephemeralPublic: "{" }), "203 ephemeralPublic"],
  ];
  for (const [name, body, says] of requests)
    test(`/authenticate: ${name}`, async () => {
      const answer = await acs.post("/authenticate", body(new Sdk(acs)));
      const message = erroOf(answer);
      assert.deepEqual([answer.status, saidBy(message, says), message.errorMessageType], [400, says, "AReq"]);
    });

  test("/authenticate takes the key as text, and a request as the event that it was", async () => {
    const sdk = new Sdk(acs);
    const { ephemeralPublic, ...rest } = sdk.request();
    await sdk.authenticate({ event: "authenticationRequest", ...rest, ephemeralPublic: JSON.stringify(ephemeralPublic) });
    assert.equal((await sdk.post()).messageType, "CRes");
  });

  const sealed = (change) => (sdk) => sdk.sealed(sdk.creq(change));
  const kidOf = (sdk) => sdk.authentication.acsTransID;
  const other = crypto.randomUUID();
  const bodies = [
    ["words", () => "Good morning.", "101"],
    ["a CReq in the clear", (sdk) => JSON.stringify(sdk.creq()), "101"],
    ["a header that is no JSON", () => "AAAA..AAAA.AAAA.AAAA", "302"],
    ["another key", (sdk) => seal("{}", crypto.randomBytes(32), { alg: "dir", kid: kidOf(sdk) }), "302"],
    ["another algorithm", (sdk) => seal("{}", sdk.key, { alg: "RSA-OAEP-256", kid: kidOf(sdk) }, "x"), "302"],
    ["another transaction's kid", (sdk) => sdk.sealed(sdk.creq(), other), "301 kid"],
    ["another type", sealed({ messageType: "RReq" }), "101"],
    ["a missing field", sealed({ sdkTransID: undefined }), "201 sdkTransID"],
    ["a field of another type", sealed({ oobContinue: "true" }), "203 oobContinue"],
    ["a value that does not exist", sealed({ challengeCancel: "02" }), "203 challengeCancel"],
    ["a field twice", (sdk) => sdk.sealed(JSON.stringify(sdk.creq()).replace("{", '{"acsTransID":"x",')), "204 acsTransID"],
    ["a counter of another width", sealed({ sdkCounterStoA: "0" }), "302 sdkCounterStoA"],
    ["another SDK transaction", sealed({ sdkTransID: other }), "301"],
    ["another version", sealed({ messageVersion: "2.1.0" }), "203 messageVersion"],
    ["a critical extension",
      sealed({ messageExtension: [{ criticalityIndicator: true, id: "one", name: "n", data: {} }] }), "202 one"],
    ["a sealed Erro whose code is a number", sealed({ messageType: "Erro", errorCode: 101 }), "203 errorCode"],
    ["an Erro whose code is a number", () => '{"messageType":"Erro","errorCode":101}', "203 errorCode"],
  ];
  for (const [name, body, says] of bodies)
    test(`/challenge: ${name}`, async () => {
      const sdk = await new Sdk(acs).authenticate();
      const answer = await sdk.postRaw(body(sdk));
      const message = erroOf(answer);
      assert.deepEqual([answer.status, saidBy(message, says), message.sdkTransID], [200, says, sdk.sdkTransID]);
      const next = erroOf(await sdk.postRaw(sdk.sealed(sdk.creq())));
      assert.equal(saidBy(next, "301 The challenge has ended."), "301 The challenge has ended.");
    });

  test("an unknown transaction is 404 with 301", async () => {
    for (const path of ["", other, "%00"]) {
      const answer = await acs.post(`/challenge/${path}`, "x");
      assert.deepEqual([answer.status, erroOf(answer).errorCode], [404, "301"]);
    }
  });

  const others = [
    ["GET", "/authenticate", 405], ["POST", "/logo/issuer-high.png", 405], ["GET", "/logo/other.png", 404],
    ["GET", "/", 404], ["POST", "/", 404], ["GET", "/logo/../../etc/passwd", 404], ["GET", `/${"a".repeat(1024)}`, 414],
    ["GET", `/${"a".repeat(8100)}`, 414]];
  test("methods and paths that there are not", async () => {
    for (const [method, path, status] of others)
      assert.equal((await acs.send(method, path)).status, status, `${method} ${path}`);
  });

  test("many names cost no more than their length, and an error that lists them stays short", async () => {
    const ticks = () => {
      const fields = readFileSync(`/proc/${acs.child.pid}/stat`, "latin1").split(") ")[1].split(" ");
      return Number(fields[11]) + Number(fields[12]);
    };
    const costOf = async (count) => {
      const names = Array.from({ length: count }, (_, index) => `"n${index}":0,`).join("");
      const text = (members) => JSON.stringify(members).replace("{", `{${names}`);
      const begin = ticks();
      const sdk = new Sdk(acs);
      const { errorCode, errorDetail } = erroOf(await acs.post("/authenticate", text(sdk.request())));
      assert.deepEqual([errorCode, errorDetail.length], ["203", 1003]);
      await sdk.authenticate();
      const answer = await sdk.postRaw(sdk.sealed(text(sdk.creq())));
      assert.equal(JSON.parse(open(answer.body, sdk.key)).messageType, "CRes");
      return ticks() - begin;
    };
    const few = await costOf(8000);
    const many = await costOf(64000);
    assert.ok(many < 24 * few, `${many} against ${few} ticks`); // 8 times the names, 64 times the pairs
  });

  const mebibyte = 1024 * 1024;
  for (const path of ["/authenticate", "/challenge/x"])
    test(`${path} reads 1 MiB and refuses a byte more, also in chunks and unpacked`, async () => {
      const taken = await acs.post(path, "x".repeat(mebibyte));
      assert.notEqual(taken.status, 413);
      assert.equal(erroOf(taken).messageType, "Erro");
      const tooMuch = "x".repeat(mebibyte + 1);
      const bomb = gzipSync(Buffer.alloc(64 * mebibyte));
      for (const [body, headers] of [[tooMuch], [tooMuch, { "Transfer-Encoding": "chunked" }], [bomb, { "Content-Encoding": "gzip" }]])
        assert.equal((await acs.post(path, body, headers)).status, 413);
    });
});

suite("the process", () => {
  test("a challenge is forgotten after its time", () => withSdk("text", async (sdk) => {
    const begin = performance.now();
    let answer;
    do answer = await sdk.postRaw("x"); while (answer.status === 200 && performance.now() - begin < 10000);
    assert.deepEqual([answer.status, JSON.parse(answer.body).errorCode], [404, "301"]);
  }, "--forget-after", "0.05"));

  for (const [name, signal] of [["faultSlowAnswer", "SIGTERM"], ["faultNoAnswer", "SIGINT"]])
    test(`${signal} ends it at once while ${name} waits`, () => withSdk(name, async (sdk, acs) => {
      const cut = assert.rejects(sdk.postRaw(sdk.sealed(sdk.creq())));
      await acs.event(({ fault }) => fault !== undefined);
      const begin = performance.now();
      assert.equal(await acs.stop(signal), 0);
      assert.ok(performance.now() - begin < 3000);
      await cut;
    }));

  const exchangeMuch = async (acs) => (await new Sdk(acs).authenticate()).post({ filler: "x".repeat(780000) });

  test("whom nobody reads serves on; the reader who comes back is told what he missed, the file has it all", async () => {
    const log = written("");
    await withAcs("text", async (acs) => {
      acs.lines.pause();
      const rounds = 24;
      for (let round = 0; round < rounds; ++round) await exchangeMuch(acs);
      acs.lines.resume();
      const { lines } = await acs.event(({ event }) => event === "dropped");
      await new Sdk(acs).authenticate();
      await acs.event((_, index) => acs.events[index - 2]?.event === "dropped");
      // Of each round four messages; then the request behind them, its answer, the first line and the gap.
      assert.equal(acs.events.length + lines, 4 * rounds + 4);
      assert.equal(readFileSync(log, "utf8").split("\n").length - 1, 4 * rounds + 3);
    }, "--log", log);
  });

  test("SIGTERM ends it although nobody reads its output", async () => {
    const acs = await Acs.play("text");
    acs.lines.close(); // which also stops its stream
    for (let round = 0; round < 4; ++round) await exchangeMuch(acs);
    const exit = once(acs.child, "exit");
    acs.child.kill("SIGTERM");
    assert.deepEqual(await Promise.race([exit, setTimeout(10000, "still there", { ref: false })]), [0, null]);
    acs.child.stdout.resume();
    await acs.stop();
  });

  test("the PKI is kept, its keys are for the owner alone, and a gap in it is told", async () => {
    const names = readdirSync(pki);
    const read = () => names.map((name) => readFileSync(join(pki, name), "latin1"));
    const first = read();
    await withAcs("text", () => {});
    assert.deepEqual(readdirSync(pki), names);
    assert.deepEqual(read(), first);
    const keys = names.filter((name) => name.endsWith(".key"));
    assert.ok(keys.length >= 5);
    for (const name of keys) assert.equal(statSync(join(pki, name)).mode & 0o777, 0o600, name);
    const broken = join(folder, "broken");
    assert.equal(await (await Acs.start(["--pki", `${broken}/`])).stop(), 0);
    rmSync(join(broken, "acs-ec.key"));
    const { status, stderr } = run("--pki", broken);
    assert.equal(status, 2);
    assert.match(stderr, /acs-ec\.key: The file cannot be read/);
  });

  test("two that start on one folder share what the first made", async () => {
    const shared = join(folder, "shared");
    const both = await Promise.all([1, 2].map(() => Acs.start(["--pki", shared])));
    for (const acs of both) assert.equal((await (await new Sdk(acs).authenticate()).post()).messageType, "CRes");
    for (const acs of both) assert.equal(await acs.stop(), 0);
    assert.deepEqual(readdirSync(folder).filter((name) => name.endsWith(".new")), []);
  });
});

suite("wrong usage", () => {
  const step = (members) => JSON.stringify({ steps: [{ screen: { acsUiType: "01" }, ...members }] });
  const screen = (members) => JSON.stringify({ steps: [{ screen: members }] });
  const fault = (name, parameters) => step({ fault: { name, ...parameters } });
  const rows = [
    ["no JSON", '{"steps": [\n  {,\n]}', /:2: This is not JSON/],
    ["a number that overflows", '{"steps": [],\n"attempts": 1e400}', /:2: This number is too large/],
    ["a level too many", `["[",\n${"[".repeat(256)}${"]".repeat(256)}\n]`, /:2: This nests deeper than 256/],
    ["an option that is named as an index is", screen({ challengeSelectInfo: [{ "Index 99999999999999999999": 2 }] }),
      /:1: steps\[0\]\.screen\.challengeSelectInfo\[0\]\.Index 99999999999999999999: /],
    ["no steps", "{}", /:1: lacks the member "steps"/],
    ["an unknown member", '{\n"steps": [],\n"stops": []}', /:3: stops: is not known here; known are/],
    ["a member twice", '{\n"steps": [],\n"steps": []}', /:3: steps: stands twice/],
    ["a member of a screen that the ACS sets", screen({ acsTransID: "x" }), /steps\[0\]\.screen\.acsTransID/],
    ["a member of another type", screen({ challengeSelectInfo: [{ a: "A" }, { b: 2 }] }), /challengeSelectInfo\[1\]\.b: /],
    ["an image that lacks a density", screen({ issuerImage: { medium: "x" } }), /screen\.issuerImage\.high: /],
    ["no attempts", step({ attempts: 0 }), /steps\[0\]\.attempts: /],
    ["a pass beyond the attempts", step({ attempts: 2, passesFrom: 3 }), /steps\[0\]\.passesFrom: .* from 1 to 2/],
    ["an answer that no CReq has", step({ accepts: { code: ["1"] } }), /accepts\.code: is not known/],
    ["an answer of another type", step({ accepts: { oobContinue: ["true"] } }), /oobContinue\[0\]: must be true or false/],
    ["a fault in the wrong place", fault("foreignRoot"), /fault\.name: names no fault of this place; there are wrongCounter/],
    ["a fault without its parameter", fault("missingField"), /fault: lacks the member "member"/],
    ["a fault of a member that no CRes has", fault("missingField", { member: "x" }), /fault\.member: names no member/],
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
});
