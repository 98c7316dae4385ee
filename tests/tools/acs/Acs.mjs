// korvane-acs as a child process, and HTTPS requests that trust its root alone.

import { strict as assert } from "node:assert";
import { spawn } from "node:child_process";
import { once } from "node:events";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { Agent, request } from "node:https";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after } from "node:test";
import { createInterface } from "node:readline";

/** The files of this run; they go with it. */
export const folder = mkdtempSync(join(tmpdir(), "korvane-tools-"));
export const pki = join(folder, "pki");
after(() => rmSync(folder, { recursive: true }));

let count = 0;
/** A new file with this text. */
export const written = (text) => {
  const path = join(folder, `file-${++count}.json`);
  writeFileSync(path, text);
  return path;
};
/** A new folder with these files. */
export const writtenFolder = (files) => {
  const path = mkdtempSync(join(folder, "folder-"));
  for (const [name, text] of Object.entries(files)) writeFileSync(join(path, name), text);
  return path;
};
export const shipped = (name) => JSON.parse(readFileSync(join(process.env.KORVANE_SCENARIOS, `${name}.json`)));

export class Acs {
  static async start(args, program = process.env.KORVANE_ACS) {
    const acs = new Acs();
    acs.child = spawn(program, args, { stdio: ["ignore", "pipe", "inherit"] });
    acs.closed = once(acs.child, "close");
    acs.events = [];
    acs.lines = createInterface({ input: acs.child.stdout });
    acs.lines.on("line", (line) => acs.events.push(JSON.parse(line)));
    await Promise.race([once(acs.lines, "line"), acs.closed]);
    if (acs.events.length === 0) throw new Error(`korvane-acs ended without a line: ${await acs.closed}`);
    acs.listening = acs.events[0];
    acs.url = acs.listening.url;
    acs.agent = new Agent({ ca: readFileSync(acs.listening.tlsRoot), keepAlive: true });
    return acs;
  }

  /** Plays a scenario: a shipped one by its name, or one of the test's own. */
  static play(scenario, ...args) {
    const own = written(JSON.stringify(typeof scenario === "string" ? shipped(scenario) : scenario));
    return Acs.start(["--pki", pki, "--scenario", own, ...args]);
  }

  /** The answer to a request: status, headers and body; rejects when the connection ends without one. */
  send(method, path, body, headers = {}) {
    return new Promise((resolve, reject) => {
      // The server's name is told, or Node takes it from a Host among the headers.
      const options = { method, agent: this.agent, headers, servername: "localhost" };
      const outgoing = request(new URL(path, this.url), options, (answer) => {
        const parts = [];
        answer.on("data", (part) => parts.push(part));
        answer.on("error", reject);
        answer.on("end", () =>
          resolve({ status: answer.statusCode, headers: answer.headers, body: Buffer.concat(parts) }));
      });
      outgoing.on("error", reject);
      outgoing.end(body);
    });
  }

  post(path, body, headers) {
    return this.send("POST", path, body, headers);
  }

  /** Resolves with the first event, past or to come, that suits. */
  async event(suits) {
    for (;;) {
      const found = this.events.find(suits);
      if (found) return found;
      await once(this.child.stdout, "data");
    }
  }

  /** Sends the signal; the exit code, or the signal that ended the tool. */
  async stop(signal = "SIGTERM") {
    this.child.kill(signal);
    const [code, ended] = await this.closed;
    this.agent?.destroy();
    return ended ?? code;
  }
}

/** Runs against a tool of its own, which must end well. */
export const withAcs = async (scenario, body, ...args) => {
  const acs = await Acs.play(scenario, ...args);
  try {
    await body(acs);
  } finally {
    assert.equal(await acs.stop(), 0, "the exit code of the ACS");
  }
};
