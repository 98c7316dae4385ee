// The tool as the library and the people who integrate meet it: whole challenges, faults on the wire, rubbish, its end.

import { strict as assert } from "node:assert";
import { spawnSync } from "node:child_process";
import * as crypto from "node:crypto";
import { once } from "node:events";
import { mkdtempSync, readFileSync, readdirSync, rmSync, statSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, before, suite, test } from "node:test";
import { setTimeout } from "node:timers/promises";
import { gzipSync } from "node:zlib";

import { Acs } from "./Acs.mjs";
import { Sdk, open, seal } from "./Sdk.mjs";

const folder = mkdtempSync(join(tmpdir(), "korvane-acs-"));
const pki = join(folder, "pki");
const scenario = (name) => join(process.env.KORVANE_SCENARIOS, `${name}.json`);
const start = (name, ...args) => Acs.start(["--pki", pki, "--scenario", scenario(name), ...args]);
const run = (...args) => spawnSync(process.env.KORVANE_ACS, args, { encoding: "utf8", timeout: 20000 });
const written = (name, content) => {
  const path = join(folder, name);
  writeFileSync(path, content);
  return path;
};

/** Runs against a tool of its own, which must end well. */
const withAcs = async (starting, body) => {
  const acs = await starting;
  try {
    await body(acs);
  } finally {
    assert.equal(await acs.stop(), 0, "the exit code");
  }
};

after(() => rmSync(folder, { recursive: true }));

suite("challenges", () => {
  for (const algorithm of ["RSA", "EC"])
    for (const messageVersion of ["2.1.0", "2.2.0"])
      test(`${algorithm} device data under ${messageVersion}: two wrong codes, one resent, then the right one`, () =>
        withAcs(start("text"), async (acs) => {
          const sdk = new Sdk(acs, { algorithm, messageVersion });
          await sdk.authenticate();
          assert.deepEqual(sdk.authentication.deviceData, { DV: "1.1", DD: { C001: "Linux" } });
          const first = await sdk.post();
          const { threeDSServerTransID, acsTransID } = sdk.authentication;
          const common = { threeDSServerTransID, acsTransID, sdkTransID: sdk.sdkTransID, messageType: "CRes",
            messageVersion };
          assert.equal(first.acsUiType, "01");
          for (const [name, value] of Object.entries(common)) assert.equal(first[name], value);
          assert.equal(first.acsCounterAtoS, "000");
          assert.equal(first.challengeCompletionInd, "N");
          assert.equal((await sdk.post({ challengeDataEntry: "1" })).challengeInfoTextIndicator, "Y");
          const resent = await sdk.post({ resendChallenge: "Y" });
          assert.equal(resent.challengeInfoTextIndicator, undefined);
          assert.equal((await sdk.post({ challengeNoEntry: "Y" })).challengeInfoTextIndicator, "Y");
          const last = await sdk.post({ challengeDataEntry: "1234" });
          assert.deepEqual(last, { ...common, acsCounterAtoS: "004", challengeCompletionInd: "Y", transStatus: "Y" });
        }));

  const answer = (entry) => ({ challengeDataEntry: entry });
  const rows = [
    { name: "text", ends: "N", answers: [answer("1"), answer("2"), answer("3")] },
    { name: "text", ends: "N", answers: [{ challengeCancel: "01" }] },
    { name: "singleSelect", ends: "Y", answers: [answer("mail"), answer("phone")] },
    { name: "multiSelect", ends: "Y", answers: [answer("mail,phone")] },
    { name: "oob", ends: "Y", answers: [{ oobContinue: true }, { oobContinue: true }] },
    { name: "html", ends: "Y", answers: [{ challengeHTMLDataEntry: "code=1234" }] },
    { name: "twoSteps", ends: "Y", answers: [answer("mail"), answer("1234")] },
    { name: "finalAtOnce", ends: "Y", answers: [] },
  ];
  for (const { name, ends, answers } of rows)
    test(`${name} ends with ${ends} after ${answers.length} answers`, () =>
      withAcs(start(name), async (acs) => {
        const sdk = await new Sdk(acs).authenticate();
        assert.deepEqual(sdk.verifySignedContent(), { isChainGood: true, isSignatureGood: true });
        const messages = [await sdk.post()];
        for (const members of answers) messages.push(await sdk.post(members));
        const last = messages.pop();
        assert.ok(messages.every((message) => message.challengeCompletionInd === "N"));
        assert.deepEqual([last.challengeCompletionInd, last.transStatus], ["Y", ends]);
      }));

  test("a page travels as Base64URL, an address is filled in, and its images are there", () =>
    withAcs(start("html"), async (acs) => {
      const page = (await (await new Sdk(acs).authenticate()).post()).acsHTML;
      assert.match(Buffer.from(page, "base64url").toString(), /^<!DOCTYPE html>.*<form/);
    }).then(() => withAcs(start("text"), async (acs) => {
      const { issuerImage, psImage } = await (await new Sdk(acs).authenticate()).post();
      for (const url of [...Object.values(issuerImage), ...Object.values(psImage)]) {
        const { status, headers, body } = await acs.send("GET", url);
        assert.deepEqual([status, headers["content-type"]], [200, "image/png"]);
        assert.equal(body.subarray(1, 4).toString(), "PNG");
      }
    })));

  test("64 challenges at once keep apart", () =>
    withAcs(start("text"), async (acs) => {
      const sdks = await Promise.all(Array.from({ length: 64 }, (_, index) =>
        new Sdk(acs, { algorithm: index % 2 ? "RSA" : "EC" }).authenticate()));
      await Promise.all(sdks.map((sdk) => sdk.post()));
      const ends = await Promise.all(sdks.map((sdk, index) =>
        sdk.post({ challengeDataEntry: index % 3 ? "1234" : "0" })));
      ends.forEach((end, index) => {
        assert.equal(end.sdkTransID, sdks[index].sdkTransID);
        assert.equal(end.transStatus, index % 3 ? "Y" : undefined);
      });
    }));

  test("the log has every message, opened, on stdout and in the file", () => {
    const log = join(folder, "log.jsonl");
    return withAcs(start("text", "--log", log), async (acs) => {
      const sdk = await new Sdk(acs).authenticate();
      const entry = "\u009b2J\u202e\u007f\u00e9";
      await sdk.post({ challengeDataEntry: entry });
      await acs.event(({ sealed }) => sealed);
      const [, request, answered, creq, cres] = acs.events;
      assert.deepEqual(request.message.deviceData, { DV: "1.1", DD: { C001: "Linux" } });
      assert.equal(answered.message.acsTransID, sdk.authentication.acsTransID);
      assert.deepEqual(creq.message, sdk.creq({ sdkCounterStoA: "000", challengeDataEntry: entry }));
      assert.deepEqual([cres.event, cres.sealed, cres.message.acsUiType], ["sent", true, "01"]);
      await acs.stop();
      const text = readFileSync(log, "utf8");
      assert.deepEqual(text.trimEnd().split("\n").map((line) => JSON.parse(line)), acs.events);
      assert.ok(text.includes('"\\u009b2J\\u202e\\u007f\u00e9"'), "what steers a terminal is escaped, and no more");
    });
  });
});

suite("faults", () => {
  const cres = (check) => async (sdk) => check(await sdk.post(), sdk);
  const raw = (check) => async (sdk) => check(await sdk.postRaw(sdk.sealed(sdk.creq())), sdk);
  const erro = (message, code) => {
    assert.deepEqual([message.messageType, message.errorComponent, message.errorCode], ["Erro", "A", code]);
  };
  const rows = {
    BadSignature: (sdk) => assert.deepEqual(sdk.verifySignedContent(), { isChainGood: true, isSignatureGood: false }),
    ForeignRoot: (sdk) => assert.deepEqual(sdk.verifySignedContent(), { isChainGood: false, isSignatureGood: true }),
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
  for (const [name, check] of Object.entries(rows))
    test(name, () => withAcs(start(`fault${name}`), async (acs) => check(await new Sdk(acs).authenticate())));

  test("every shipped scenario is played by a test", () => {
    const played = new Set([...Object.keys(rows), "NoAnswer", "SlowAnswer"].map((name) => `fault${name}.json`));
    const unplayed = readdirSync(process.env.KORVANE_SCENARIOS).filter((file) => /^fault/.test(file) && !played.has(file));
    assert.deepEqual(unplayed, []);
  });

  test("a slow answer comes after its seconds", () => {
    const slow = JSON.parse(readFileSync(scenario("faultSlowAnswer")));
    slow.steps[0].fault.seconds = 0.3;
    const file = written("slow.json", JSON.stringify(slow));
    return withAcs(Acs.start(["--pki", pki, "--scenario", file]), async (acs) => {
      const sdk = await new Sdk(acs).authenticate();
      const begin = performance.now();
      assert.equal((await sdk.post()).messageType, "CRes");
      assert.ok(performance.now() - begin >= 300);
    });
  });

  test("a fault of a later step leaves the first alone", () => {
    const two = JSON.parse(readFileSync(scenario("twoSteps")));
    two.steps[1].fault = { name: "wrongCounter" };
    two.success = { fault: { name: "missingField", member: "transStatus" } };
    const file = written("later.json", JSON.stringify(two));
    return withAcs(Acs.start(["--pki", pki, "--scenario", file]), async (acs) => {
      const sdk = await new Sdk(acs).authenticate();
      assert.equal((await sdk.post()).acsCounterAtoS, "000");
      assert.equal((await sdk.post({ challengeDataEntry: "mail" })).acsCounterAtoS, "002");
      const last = await sdk.post({ challengeDataEntry: "1234" });
      assert.deepEqual([last.challengeCompletionInd, last.transStatus], ["Y", undefined]);
    });
  });
});

suite("rubbish", () => {
  let acs;
  before(async () => { acs = await start("text"); });
  after(async () => assert.equal(await acs.stop("SIGINT"), 0));

  const erroOf = ({ body }) => {
    const message = JSON.parse(body);
    assert.deepEqual([message.messageType, message.errorComponent], ["Erro", "A"]);
    return message;
  };

  const request = (change) => (sdk) => JSON.stringify({ ...sdk.request(), ...change });
  const without = (...names) => (sdk) =>
    JSON.stringify(Object.fromEntries(Object.entries(sdk.request()).filter(([name]) => !names.includes(name))));
  const p256 = crypto.generateKeyPairSync("ec", { namedCurve: "P-256" }).publicKey.export({ format: "jwk" });
  const p384 = crypto.generateKeyPairSync("ec", { namedCurve: "P-384" }).publicKey.export({ format: "jwk" });
  const requests = [
    { name: "no bytes", body: () => "", code: "101" },
    { name: "no JSON", body: () => "\xff{", code: "101" },
    { name: "a list", body: () => "[]", code: "101" },
    { name: "a depth beyond measure", body: () => "[".repeat(500000), code: "101" },
    { name: "two members missing", body: without("sdkAppID", "sdkTransId"), code: "201", detail: "sdkTransId,sdkAppID" },
    { name: "an unknown member", body: request({ surplus: 1 }), code: "203", detail: "surplus" },
    { name: "a member twice", body: (sdk) => request({})(sdk).replace("{", '{"sdkAppID":"x",'), code: "204", detail: "sdkAppID" },
    { name: "another version", body: request({ messageVersion: "1.0.2" }), code: "203", detail: "messageVersion" },
    { name: "an identifier in upper case", body: request({ sdkTransId: crypto.randomUUID().toUpperCase() }), code: "203", detail: "sdkTransId" },
    { name: "a member of another type", body: request({ deviceData: 7 }), code: "203", detail: "deviceData" },
    { name: "device data that is no JWE", body: request({ deviceData: "a.b" }), code: "302", detail: /^deviceData: / },
    { name: "device data under another key", code: "302", detail: /^deviceData: /,
      body: request({ deviceData: seal("{}", crypto.randomBytes(32), { alg: "dir", epk: p256 }) }) },
    { name: "device data with an agreement off its curve", code: "302", detail: /^deviceData: /,
      body: request({ deviceData: seal("{}", crypto.randomBytes(32), { alg: "dir", epk: { ...p256, x: p256.y } }) }) },
    { name: "a key on another curve", body: request({ ephemeralPublic: p384 }), code: "203", detail: "ephemeralPublic" },
    { name: "a key off its curve", body: request({ ephemeralPublic: { ...p256, x: p256.y } }), code: "203", detail: "ephemeralPublic" },
    { name: "a key without numbers", body: request({ ephemeralPublic: { ...p256, x: "", y: "" } }), code: "203", detail: "ephemeralPublic" },
    { name: "a key that is no JWK", body: request({ ephemeralPublic: "{" }), code: "203", detail: "ephemeralPublic" },
  ];
  for (const { name, body, code, detail } of requests)
    test(`/authenticate: ${name}`, async () => {
      const answer = await acs.post("/authenticate", body(new Sdk(acs)));
      assert.equal(answer.status, 400);
      const message = erroOf(answer);
      assert.deepEqual([message.errorCode, message.errorMessageType], [code, "AReq"]);
      if (detail) detail instanceof RegExp ? assert.match(message.errorDetail, detail) : assert.equal(message.errorDetail, detail);
    });

  test("/authenticate takes the key as text, and a request as the event that it was", async () => {
    const sdk = new Sdk(acs);
    const { ephemeralPublic, ...request } = sdk.request();
    await sdk.authenticate({ event: "authenticationRequest", ...request, ephemeralPublic: JSON.stringify(ephemeralPublic) });
    assert.equal((await sdk.post()).messageType, "CRes");
  });

  const sealed = (change) => (sdk) => sdk.sealed(sdk.creq(change));
  const other = crypto.randomUUID();
  const bodies = [
    { name: "no bytes", body: () => "", code: "101" },
    { name: "words", body: () => "Good morning.", code: "101" },
    { name: "a CReq in the clear", body: (sdk) => JSON.stringify(sdk.creq()), code: "101" },
    { name: "a header that is no JSON", body: () => "AAAA..AAAA.AAAA.AAAA", code: "302" },
    { name: "another key", code: "302",
      body: (sdk) => seal("{}", crypto.randomBytes(32), { alg: "dir", kid: sdk.authentication.acsTransID }) },
    { name: "another algorithm", code: "302",
      body: (sdk) => seal("{}", sdk.key, { alg: "RSA-OAEP-256", kid: sdk.authentication.acsTransID }, "x") },
    { name: "another transaction's kid", body: (sdk) => sdk.sealed(sdk.creq(), other), code: "301", detail: "kid" },
    { name: "sealed words", body: (sdk) => sdk.sealed("Good morning."), code: "101" },
    { name: "another type", body: sealed({ messageType: "RReq" }), code: "101" },
    { name: "a type that is a number", body: sealed({ messageType: 1 }), code: "101" },
    { name: "a missing field", body: sealed({ sdkTransID: undefined }), code: "201", detail: "sdkTransID" },
    { name: "a field of another type", body: sealed({ oobContinue: "true" }), code: "203", detail: "oobContinue" },
    { name: "a value that does not exist", body: sealed({ challengeCancel: "02" }), code: "203", detail: "challengeCancel" },
    { name: "a field twice", code: "204", detail: "acsTransID",
      body: (sdk) => sdk.sealed(JSON.stringify(sdk.creq()).replace("{", '{"acsTransID":"x",')) },
    { name: "a counter ahead", body: sealed({ sdkCounterStoA: "001" }), code: "302", detail: "sdkCounterStoA" },
    { name: "a counter of another width", body: sealed({ sdkCounterStoA: "0" }), code: "302", detail: "sdkCounterStoA" },
    { name: "another server transaction", body: sealed({ threeDSServerTransID: other }), code: "301" },
    { name: "another SDK transaction", body: sealed({ sdkTransID: other }), code: "301" },
    { name: "another version", body: sealed({ messageVersion: "2.1.0" }), code: "203", detail: "messageVersion" },
    { name: "a critical extension", code: "202", detail: "one",
      body: sealed({ messageExtension: [{ criticalityIndicator: true, id: "one", name: "n", data: {} }] }) },
    { name: "an Erro whose code is a number", body: () => '{"messageType":"Erro","errorCode":101}', code: "203", detail: "errorCode" },
  ];
  for (const { name, body, code, detail } of bodies)
    test(`/challenge: ${name}`, async () => {
      const sdk = await new Sdk(acs).authenticate();
      const answer = await sdk.postRaw(body(sdk));
      assert.equal(answer.status, 200);
      const message = erroOf(answer);
      assert.deepEqual([message.errorCode, message.errorMessageType, message.sdkTransID], [code, "CReq", sdk.sdkTransID]);
      if (detail) assert.equal(message.errorDetail, detail);
      const next = erroOf(await sdk.postRaw(sdk.sealed(sdk.creq())));
      assert.deepEqual([next.errorCode, next.errorDetail], ["301", "The challenge has ended."]);
    });

  test("members that are null count as absent", async () => {
    const sdk = await new Sdk(acs).authenticate();
    await sdk.post({ challengeCancel: null });
    const last = await sdk.post({ resendChallenge: null, messageExtension: null, challengeDataEntry: "1234" });
    assert.equal(last.transStatus, "Y");
  });

  test("an Erro of the library, in the clear or sealed, is logged and gets an empty answer", async () => {
    for (const wrap of [(sdk, text) => text, (sdk, text) => sdk.sealed(text)]) {
      const sdk = await new Sdk(acs).authenticate();
      const erro = { messageType: "Erro", errorCode: "302", sdkTransID: sdk.sdkTransID };
      const { status, body } = await sdk.postRaw(wrap(sdk, JSON.stringify(erro)));
      assert.deepEqual([status, body.length], [200, 0]);
      const logged = await acs.event(({ message }) => message?.messageType === "Erro" && message.sdkTransID === sdk.sdkTransID);
      assert.deepEqual(logged.message, erro);
    }
  });

  test("an unknown transaction is 404 with 301", async () => {
    for (const path of ["", other, "%00"]) {
      const answer = await acs.post(`${acs.url}/challenge/${path}`, "x");
      assert.equal(answer.status, 404);
      assert.equal(erroOf(answer).errorCode, "301");
    }
  });

  const others = [
    ["GET", "/authenticate", 405], ["POST", "/logo/issuer-high.png", 405], ["GET", "/logo/other.png", 404],
    ["GET", "/", 404], ["POST", "/", 404], ["GET", "/logo/../../etc/passwd", 404], ["GET", `/${"a".repeat(1024)}`, 414],
    ["GET", `/${"a".repeat(8100)}`, 414]];
  for (const [method, path, status] of others)
    test(`${method} ${path.slice(0, 30)} (${path.length}) is ${status}`, async () =>
      assert.equal((await acs.send(method, path)).status, status));

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
  for (const path of ["/authenticate", "/challenge/x"]) {
    test(`${path} reads 1 MiB and refuses a byte more`, async () => {
      const taken = await acs.post(path, "x".repeat(mebibyte));
      assert.notEqual(taken.status, 413);
      assert.equal(erroOf(taken).messageType, "Erro");
      assert.equal((await acs.post(path, "x".repeat(mebibyte + 1))).status, 413);
    });
    test(`${path} refuses 64 MiB that come in 64 KiB`, async () => {
      const bomb = gzipSync(Buffer.alloc(64 * mebibyte));
      assert.equal((await acs.post(path, bomb, { "Content-Encoding": "gzip" })).status, 413);
    });
    test(`${path} refuses a byte too many in chunks`, async () => {
      const { status } = await acs.post(path, "x".repeat(mebibyte + 1), { "Transfer-Encoding": "chunked" });
      assert.equal(status, 413);
    });
  }
});

suite("the process", () => {
  test("a challenge is forgotten after its time", () =>
    withAcs(start("text", "--forget-after", "0.05"), async (acs) => {
      const sdk = await new Sdk(acs).authenticate();
      const begin = performance.now();
      let answer;
      do answer = await sdk.postRaw("x"); while (answer.status === 200 && performance.now() - begin < 10000);
      assert.deepEqual([answer.status, JSON.parse(answer.body).errorCode], [404, "301"]);
    }));

  for (const [name, signal] of [["faultSlowAnswer", "SIGTERM"], ["faultNoAnswer", "SIGINT"]])
    test(`${signal} ends it at once while ${name} waits`, async () => {
      const acs = await start(name);
      const sdk = await new Sdk(acs).authenticate();
      const cut = assert.rejects(sdk.postRaw(sdk.sealed(sdk.creq())));
      await acs.event(({ fault }) => fault !== undefined);
      const begin = performance.now();
      assert.equal(await acs.stop(signal), 0);
      assert.ok(performance.now() - begin < 3000);
      await cut;
    });

  const exchangeMuch = async (acs) => (await new Sdk(acs).authenticate()).post({ filler: "x".repeat(780000) });

  test("whom nobody reads serves on; the reader who comes back is told what he missed, the file has it all", async () => {
    const log = join(folder, "unread.jsonl");
    await withAcs(start("text", "--log", log), async (acs) => {
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
    });
  });

  test("SIGTERM ends it although nobody reads its output", async () => {
    const acs = await start("text");
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
    await withAcs(start("text"), () => {});
    assert.deepEqual(readdirSync(pki), names);
    assert.deepEqual(read(), first);
    const keys = names.filter((name) => name.endsWith(".key"));
    assert.ok(keys.length >= 5);
    for (const name of keys) assert.equal(statSync(join(pki, name)).mode & 0o777, 0o600, name);
    const broken = join(folder, "broken");
    await withAcs(Acs.start(["--pki", `${broken}/`]), () => {});
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
  const step = { screen: { acsUiType: "01" } };
  const lines = (...text) => text.join("\n");
  const rows = [
    { name: "no JSON", text: lines('{"steps": [', "  {,", "]}"), says: /:2: This is not JSON/ },
    { name: "a number that overflows", text: lines('{"steps": [],', '"attempts": 1e400}'), says: /:2: This number is too large/ },
    { name: "a number of 10,000 digits", text: lines("[", "9".repeat(10000), "]"), says: /:2: This number is too large/ },
    { name: "a level too many", text: lines('["[",', "[".repeat(256) + "]".repeat(256), "]"), says: /:2: This nests deeper than 256/ },
    { name: "an option that is named as an index is", says: /:1: steps\[0\]\.screen\.challengeSelectInfo\[0\]\.Index 99999999999999999999: /,
      text: '{"steps":[{"screen":{"challengeSelectInfo":[{"Index 99999999999999999999":2}]}}]}' },
    { name: "no steps", text: "{}", says: /:1: lacks the member "steps"/ },
    { name: "an unknown member", text: lines("{", '"steps": [],', '"stops": []}'), says: /:3: stops: is not known here; known are/ },
    { name: "a member twice", text: lines("{", '"steps": [],', '"steps": []}'), says: /:3: steps: stands twice/ },
    { name: "an unknown member of a screen", says: /:3: steps\[1\]\.screen\.acsUIType: is not known/,
      text: lines('{"steps": [', `${JSON.stringify(step)},`, '{"screen": {"acsUIType": "01"}}]}') },
    { name: "a member of a screen that the ACS sets", text: '{"steps":[{"screen":{"acsTransID":"x"}}]}', says: /screen\.acsTransID/ },
    { name: "a screen's member of another type", says: /:2: steps\[0\]\.screen\.challengeSelectInfo\[1\]\.b: /,
      text: lines('{"steps":[{"screen":{"challengeSelectInfo":[{"a":"A"},', '{"b":2}]}}]}') },
    { name: "an image that lacks a density", says: /screen\.issuerImage\.high: /,
      text: '{"steps":[{"screen":{"issuerImage":{"medium":"x"}}}]}' },
    { name: "an unknown signature", text: '{"steps":[],"signature":"PS512"}', says: /signature: must be PS256, RS256 or ES256/ },
    { name: "no attempts", text: JSON.stringify({ steps: [{ ...step, attempts: 0 }] }), says: /steps\[0\]\.attempts: / },
    { name: "a pass beyond the attempts", text: JSON.stringify({ steps: [{ ...step, attempts: 2, passesFrom: 3 }] }),
      says: /steps\[0\]\.passesFrom: .* from 1 to 2/ },
    { name: "an answer that no CReq has", text: JSON.stringify({ steps: [{ ...step, accepts: { code: ["1"] } }] }),
      says: /accepts\.code: is not known/ },
    { name: "an answer of another type", text: JSON.stringify({ steps: [{ ...step, accepts: { oobContinue: ["true"] } }] }),
      says: /accepts\.oobContinue\[0\]: must be true or false/ },
    { name: "an unknown fault", text: JSON.stringify({ steps: [{ ...step, fault: { name: "x" } }] }),
      says: /fault\.name: names no fault of this place; there are wrongCounter/ },
    { name: "a fault in the wrong place", text: JSON.stringify({ steps: [{ ...step, fault: { name: "foreignRoot" } }] }),
      says: /fault\.name: / },
    { name: "a fault without its parameter", text: JSON.stringify({ steps: [{ ...step, fault: { name: "missingField" } }] }),
      says: /fault: lacks the member "member"/ },
    { name: "a fault with another's parameter", text: JSON.stringify({ steps: [{ ...step, fault: { name: "wrongKey", seconds: 1 } }] }),
      says: /fault\.seconds: is not known/ },
    { name: "a fault of a member that no CRes has", text: JSON.stringify({ steps: [{ ...step, fault: { name: "missingField", member: "x" } }] }),
      says: /fault\.member: names no member of a CRes/ },
    { name: "a pause without end", text: JSON.stringify({ steps: [{ ...step, fault: { name: "slowAnswer", seconds: 601 } }] }),
      says: /fault\.seconds: must be a number above 0 and at most 600/ },
  ];
  for (const { name, text, says } of rows)
    test(`scenario: ${name}`, () => {
      const file = written("bad.json", text);
      const { status, stdout, stderr } = run("--pki", pki, "--scenario", file);
      assert.deepEqual([status, stdout], [2, ""]);
      assert.ok(stderr.startsWith(`korvane-acs: ${file}:`), stderr);
      assert.match(stderr, says);
    });

  test("--help names every fault", () => {
    const { status, stdout } = run("--help");
    assert.equal(status, 0);
    for (const name of ["badSignature", "foreignRoot", "wrongCounter", "connectionClosed"]) assert.match(stdout, new RegExp(name));
  });
});
