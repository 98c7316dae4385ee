// korvane-jose in batch mode, as a child process: a line in, the answer out.

import { strict as assert } from "node:assert";
import { spawn } from "node:child_process";
import { once } from "node:events";

import { Lines } from "./Lines.mjs";

export const base64url = (bytes) => Buffer.from(bytes).toString("base64url");

export class Batch {
  #child;
  #answers;
  #closed;

  constructor(program = process.env.KORVANE_JOSE) {
    this.#child = spawn(program, [], { stdio: ["pipe", "pipe", "inherit"] });
    this.#answers = new Lines(this.#child.stdout);
    this.#closed = once(this.#child, "close");
    // A tool that ends early is reported by the answer that is missing.
    this.#child.stdin.on("error", () => {});
  }

  /** The answer to one line: an object, or the text or the bytes of a line as they are. */
  async ask(line) {
    const text = typeof line === "string" || Buffer.isBuffer(line) ? line : JSON.stringify(line);
    this.#child.stdin.write(Buffer.concat([Buffer.from(text), Buffer.from("\n")]));
    const answer = await this.#answers.next();
    if (answer !== undefined) return JSON.parse(answer);
    throw new Error(`the tool ended (${await this.close()}) without an answer to ${String(text).slice(0, 200)}`);
  }

  /** The members of the answer to an operation that must succeed. */
  async perform(operation) {
    const { ok, ...members } = await this.ask(operation);
    assert.ok(ok, `${operation.op} failed: ${members.error}: ${members.description}`);
    return members;
  }

  /** Ends the input; the exit code, or the signal that ended the tool. */
  async close() {
    this.#child.stdin.end();
    const [code, signal] = await this.#closed;
    return signal ?? code;
  }
}
