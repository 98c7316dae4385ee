// korvane-challenge --play: plans against the test ACS, those that fail included.

import { strict as assert } from "node:assert";
import { execFile } from "node:child_process";
import { once } from "node:events";
import { readFileSync } from "node:fs";
import { createServer } from "node:http";
import { join } from "node:path";
import { suite, test } from "node:test";

import { folder, shipped, withAcs, written } from "../acs/Acs.mjs";
import { Cardholder } from "./Cardholder.mjs";

const code = { screen: { uiType: "01", label: "Your code", whitelisting: null }, action: "submit", data: "1234" };
const ending = { event: "completed", transactionStatus: "Y" };

/** How a run of the tool with a plan ends, and what it says. */
const play = (acs, plan, args = [], url = `${acs.url}/authenticate`, wrap = (program, all) => [program, all],
  meet = () => {}) =>
  new Promise((resolve) => {
    const file = written(typeof plan === "string" ? plan : JSON.stringify(plan));
    const all = [...Cardholder.options(acs), "--authenticate", url, "--play", file, ...args];
    meet(execFile(...wrap(process.env.KORVANE_CHALLENGE, all), { timeout: 120000 }, (error, stdout, stderr) =>
      resolve({ status: error?.code ?? 0, stdout, stderr, file })));
  });

suite("a plan", { concurrency: 3 }, () => {
  test("many at a time: each once, under its own identifier, counted, timed and written down", () =>
    withAcs({ ...shipped("text"), failure: { transStatus: "N" } }, async (acs) => {
      const junit = join(folder, "junit.xml");
      const steps = [{ ...code, data: "12" }, { ...code, screen: { warning: true } }];
      const { status, stdout, stderr } = await play(acs, { steps, ending }, ["--repeat", "12", "--parallel", "5", "--junit", junit]);
      assert.deepEqual([status, stderr], [0, ""]);
      const lines = stdout.trimEnd().split("\n");
      assert.deepEqual(lines.slice(0, 12).map((line) => +/^(\d+) passed, \d+\.\d\d s$/.exec(line)[1]).sort((a, b) => a - b),
        Array.from({ length: 12 }, (_, index) => index + 1));
      assert.match(lines[12], /^12 challenges, 5 at a time, in \d+\.\d\d s: 12 passed, 0 failed$/);
      const ended = acs.events.filter(({ event, message }) => event === "received" && message?.challengeDataEntry === "1234");
      assert.equal(new Set(ended.map(({ message }) => message.sdkTransID)).size, 12);
      const xml = readFileSync(junit, "utf8");
      assert.match(xml, /<testsuite name="[^"]*" tests="12" failures="0" /);
      const times = [...xml.matchAll(/<testcase [^>]*time="([\d.]+)"\/>/g)].map(([, time]) => +time).sort((a, b) => a - b);
      assert.equal(times.length, 12);
      assert.ok(times[0] > 1); // two answers, which the library holds back for a moment each
      const told = [times[5], times[11], times[11]].map((time) => time.toFixed(2)); // by nearest rank: 6 and 12 of 12
      assert.deepEqual(/median (\S+) s, 95th percentile (\S+) s, longest (\S+) s$/.exec(lines[13]).slice(1), told);
    }));

  const rows = [
    ["another text", { steps: [{ ...code, screen: { header: "Pay <now>", typed: "", html: null } }], ending }, "text",
      'screen 1: header: expected "Pay <now>", got "Confirm your purchase"\n'],
    ["a member too many and one too few", { steps: [{ ...code, screen: { submit: null, html: "x" } }], ending }, "text",
      'screen 1: submit: expected nothing, got "Submit"\n    screen 1: html: expected "x", got nothing\n'],
    ["an ending for a screen", { steps: [{ screen: {}, action: "select", keys: ["letter"] }, code], ending }, "twoSteps",
      /^screen 2: expected a screen, got completed \{"sdkTransactionID":"[^"]*","transactionStatus":"N"\}\n/],
    ["a screen for an ending", { ending }, "text", /^ending: expected completed \{"transactionStatus":"Y"\}, got screen \{.*\n/],
    ["another status", { steps: [code], ending: { ...ending, transactionStatus: "N" } }, "text",
      'ending: transactionStatus: expected "N", got "Y"\n'],
    ["an action that the screen has not", { steps: [{ action: "continue" }], ending }, "text",
      "screen 1, continue: This screen has no such control.\n"],
    ["an answer that is no JWE", { ending }, "faultHttp500",
      /got protocolError \{.*"hint":"The ACS's answer is no JWE: status 500, 21 bytes, which begin with \\"Internal Server Error\\"\."/],
    ["a chain that leads elsewhere", { ending }, "faultForeignRoot",
      /"hint":"The chain in acsSignedContent does not lead to the certificate of --ds-root: unable to get local issuer certificate\."/],
    ["a signature that is broken", { ending }, "faultBadSignature", /"hint":"JOSEError error 9 is signatureInvalid\."/],
  ];
  for (const [name, plan, scenario, says] of rows)
    test(`left: ${name}`, () => withAcs(scenario, async (acs) => {
      const junit = join(folder, `${name}.xml`);
      const { status, stdout } = await play(acs, plan, ["--junit", junit]);
      const [, told] = /^1 failed \(sdkTransID [-0-9a-f]{36}\):\n    ([^]*)1 challenge, 1 at a time, in \S+ s: 0 passed, 1 failed\n$/.exec(stdout);
      if (typeof says === "string") assert.equal(told, says);
      else assert.match(told, says);
      assert.equal(status, 1);
      assert.match(readFileSync(junit, "utf8"), /failures="1" [^]*<failure type="difference" message="[^"<>]+"\/>/);
      const left = acs.events.filter(({ message }) => message?.challengeCancel === "01").length;
      assert.equal(left, /^screen 1|got screen/.test(told) ? 1 : 0, "the ACS hears of a plan that was left");
    }));

  test("on a terminal a bar grows, and what fails stands above it", () => withAcs("text", async (acs) => {
    const quoted = (words) => words.map((word) => `'${word}'`).join(" ");
    const { stdout } = await play(acs, { steps: [{ ...code, screen: { label: "x" } }], ending }, ["--repeat", "2"], undefined,
      (program, all) => ["script", ["-qec", quoted([program, ...all]), "/dev/null"]]);
    assert.match(stdout, /\[ {40}\] 0\/2, 0 failed\r\u001b\[K1 failed [^]*\[#{20} {20}\] 1\/2, 1 failed\r/);
  }));

  test("a process that dies takes no other along", () => withAcs("text", async (acs) => {
    let child;
    const killing = (process_) => {
      const look = setInterval(() => {
        child = readFileSync(`/proc/${process_.pid}/task/${process_.pid}/children`, "utf8").trim().split(" ").filter(Boolean)[0];
        if (child === undefined) return;
        clearInterval(look);
        process.kill(+child, "SIGKILL");
      }, 5);
    };
    const { status, stdout } = await play(acs, { steps: [code], ending }, ["--repeat", "3", "--parallel", "3"], undefined, undefined, killing);
    assert.equal(status, 1);
    assert.match(stdout, /^    .*: got no event any more: signal 9$/m);
    assert.match(stdout, /: 2 passed, 1 failed$/m);
  }));

  test("servers that say too little, too much and something else", async (context) => {
    const answers = {
      "/drop": [null, "There is no answer: Empty reply from server"],
      "/list": [[200, "[1]"], 'The answer has no values for a challenge: status 200, 3 bytes, which begin with "[1]".'],
      "/nothing": [[204, ""], "The answer has no values for a challenge: status 204, no body."],
      "/bad": [[502, `<p>\u001b[2J${"x".repeat(99)}`],
        `The answer has no values for a challenge: status 502, 106 bytes, which begin with "<p>\\u001b[2J${"x".repeat(73)}".`],
      "/erro": [[200, '{"messageType":"Erro"}'], 'The answer has no values for a challenge: status 200, 22 bytes, which begin with "{\\"messageType\\":\\"Erro\\"}".'],
      "/type": [[200, '{"acsTransID":1,"dsTransID":"x"}'], 'The answer\'s member "acsTransID" must be a string.'],
    };
    const server = createServer((request, answer) => {
      const [status, body] = answers[request.url][0] ?? [];
      if (status) answer.writeHead(status).end(body);
      else request.socket.destroy();
    }).listen(0, "127.0.0.1");
    await once(server, "listening");
    context.after(() => server.close());
    await withAcs("text", async (acs) => {
      for (const [path, [, says]] of Object.entries(answers)) {
        const url = `http://127.0.0.1:${server.address().port}${path}`;
        const cardholder = new Cardholder([...Cardholder.options(acs), "--authenticate", url]);
        assert.equal((await cardholder.next()).event, "authenticationRequest");
        assert.deepEqual(await cardholder.next(), { event: "error", message: `${url}: ${says}` });
        assert.equal(await cardholder.ended(), 1);
      }
    });
  });

  test("servers that have no answer, and all that is wrong with a plan at once", () => withAcs("text", async (acs) => {
    const servers = [[`${acs.url}/elsewhere`, /elsewhere: The answer has no values for a challenge: status 404, 24 bytes, /],
      ["https://127.0.0.1:1/", /https:\/\/127\.0\.0\.1:1\/: There is no answer: Failed to connect/]];
    for (const [url, says] of servers) {
      const { status, stdout } = await play(acs, { ending }, [], url);
      assert.equal(status, 1);
      assert.match(stdout, says);
    }
    const bad = '{\n"steps": [{"screen": {"uiTyp": "01"},\n"action": "submit", "data": 12},\n{"action": "fly"}],\n"ending": {"event": "done"},\n"end": 1}';
    const { status, stdout, stderr, file } = await play(acs, bad);
    assert.deepEqual([status, stdout], [2, ""]);
    const says = [":2: steps[0]: \"data\" must be a string.", ":2: steps[0].screen.uiTyp: is not known", ":4: steps[1]: \"action\" is not known: fly",
      ":5: ending.event: names no ending", ":6: end: is not known"];
    for (const text of says) assert.ok(stderr.includes(file + text), `${text} in ${stderr}`);
    assert.equal(stderr.trimEnd().split("\n").length, says.length);
  }));
});
