// korvane-challenge as a child process, with the application's part played between it and korvane-acs.

import { spawn } from "node:child_process";
import { once } from "node:events";

import { Lines } from "../jose/Lines.mjs";

export class Cardholder {
  /** The command line for an ACS's directory server. */
  static options({ listening }, { algorithm = "EC", messageVersion = "2.2.0", timeout = 5 } = {}) {
    return ["--directory-server", listening.directoryServerID, "--algorithm", algorithm,
      "--ds-certificate", algorithm === "EC" ? listening.deviceDataEC : listening.deviceDataRSA,
      "--ds-root", listening.directoryServerRoot, "--ca", listening.tlsRoot,
      "--message-version", messageVersion, "--timeout", `${timeout}`];
  }

  constructor(args, program = process.env.KORVANE_CHALLENGE) {
    this.child = spawn(program, args, { stdio: ["pipe", "pipe", "pipe"], timeout: 120000 }); // or a test that failed waits
    this.child.stdin.on("error", () => {}); // it may end while we write
    this.closed = once(this.child, "close");
    this.log = "";
    this.child.stderr.on("data", (text) => { this.log += text; });
    this.events = new Lines(this.child.stdout);
  }

  /** The next event; fails at the end of the output. */
  async next() {
    const line = await this.events.next();
    if (line === undefined) throw new Error(`korvane-challenge ended: ${this.log}`);
    return JSON.parse(line);
  }

  write(line) {
    this.child.stdin.write((typeof line === "string" ? line : JSON.stringify(line)) + "\n");
  }

  /** Does an action, and gives the next event. */
  act(action, members = {}) {
    this.write({ action, ...members });
    return this.next();
  }

  /** The exit code, once it has ended by itself. */
  async ended() {
    const [code, signal] = await this.closed;
    return signal ?? code;
  }

  /** Takes the authentication request to the ACS and its answer back. */
  async authenticate(acs, change = (answer) => answer) {
    const { event, ...request } = await this.next();
    if (event !== "authenticationRequest") throw new Error(`unexpected ${event}`);
    const answer = JSON.parse((await acs.post("/authenticate", JSON.stringify(request))).body);
    Object.assign(this, { deviceData: answer.deviceData, request });
    this.write(change(answer));
  }

  /** A challenge as far as its first event. */
  static async begin(acs, options = {}, change = undefined) {
    const cardholder = new Cardholder(Cardholder.options(acs, options));
    await cardholder.authenticate(acs, change);
    cardholder.first = await cardholder.next();
    return cardholder;
  }
}
