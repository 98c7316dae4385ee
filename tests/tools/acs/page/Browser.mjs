// The browser as a child process, with the verbs of a person.

import { strict as assert } from "node:assert";
import { spawn } from "node:child_process";
import { mkdirSync } from "node:fs";
import { join } from "node:path";
import { setTimeout } from "node:timers/promises";

import { Lines } from "../../jose/Lines.mjs";

export class Browser {
  constructor(downloads) {
    const settings = { QT_QPA_PLATFORM: "offscreen", QT_QUICK_BACKEND: "software", QTWEBENGINE_DISABLE_SANDBOX: "1",
      QTWEBENGINE_CHROMIUM_FLAGS: "--disable-gpu" };
    this.child = spawn(process.env.KORVANE_BROWSER, [downloads],
      { stdio: ["pipe", "pipe", "inherit"], env: { ...settings, ...process.env }, timeout: 200000 });
    this.lines = new Lines(this.child.stdout);
    mkdirSync(process.env.KORVANE_PICTURES, { recursive: true });
  }

  async next() {
    const line = await this.lines.next();
    assert.notEqual(line, undefined, "the browser has ended");
    return JSON.parse(line);
  }

  async do(command) {
    this.child.stdin.write(JSON.stringify(command) + "\n");
    return (await this.next()).value;
  }

  run(expression) { return this.do({ run: expression }); }

  async open(url) { assert.ok(await this.do({ open: url }), "the page loads"); }

  async click(selector) { assert.ok(await this.do({ click: selector }), `there is ${selector}`); }

  /** Types into the field that has the focus, in place of what stands there. */
  async write(text) {
    await this.do({ selectAll: true });
    await this.do({ type: text });
  }

  /** Chooses in a list by the first letters, as with the keyboard. */
  async choose(selector, letters) {
    await this.run(`document.querySelector("${selector}").focus()`);
    await this.do({ type: letters });
    await this.until(`document.querySelector("${selector}").selectedOptions[0].text.startsWith("${letters}")`);
  }

  /** Waits until an expression is true; says what the page shows where it does not come to that. */
  async until(expression) {
    for (let round = 0; round < 200; ++round) {
      if (await this.run(`Boolean(${expression})`)) return;
      await setTimeout(50);
    }
    assert.fail(`${expression}\n${await this.run("document.body.innerText")}`);
  }

  shows(selector, text) {
    return this.until(`[...document.querySelectorAll(\`${selector}\`)].some((e) => e.innerText.includes(${JSON.stringify(text)}))`);
  }

  picture(name) { return this.do({ picture: join(process.env.KORVANE_PICTURES, `acs-page-${name}.png`) }); }

  close() { this.child.stdin.end(); }
}
