// korvane-acs as a child process, and HTTPS requests that trust its root alone.

import { spawn } from "node:child_process";
import { once } from "node:events";
import { readFileSync } from "node:fs";
import { Agent, request } from "node:https";
import { createInterface } from "node:readline";

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

  /** The answer to a request: status, headers and body; rejects when the connection ends without one. */
  send(method, path, body, headers = {}) {
    return new Promise((resolve, reject) => {
      const outgoing = request(new URL(path, this.url), { method, agent: this.agent, headers }, (answer) => {
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
