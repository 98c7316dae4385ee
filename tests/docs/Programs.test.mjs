// The programs that docs/integration.md has its readers copy, each from an empty folder: built against an installed Korvane, and
// run against korvane-acs. And the challenge by hand of tools/acs/README.md, twice in one folder.

import assert from "node:assert/strict";
import { execFileSync, spawn } from "node:child_process";
import { cpSync, mkdtempSync, readFileSync, readdirSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { createInterface } from "node:readline";
import { after, test } from "node:test";

const { KORVANE_SOURCE: source, KORVANE_PREFIX: prefix, KORVANE_COMPILER: compiler } = process.env;
const home = mkdtempSync(join(tmpdir(), "korvane-docs-"));
after(() => rmSync(home, { recursive: true }));

const built = (name, program = name) => {
  cpSync(join(prefix, "share/doc/korvane/examples", name), join(home, name), { recursive: true });
  const build = join(home, name, "build");
  const chosen = ["-G", "Ninja", `-DCMAKE_PREFIX_PATH=${prefix}`, `-DCMAKE_CXX_COMPILER=${compiler}`];
  execFileSync("cmake", ["-S", join(home, name), "-B", build, ...chosen], { stdio: "pipe" });
  execFileSync("cmake", ["--build", build], { stdio: "pipe" });
  return join(build, program);
};

const commandsOf = (file) => readFileSync(file, "utf8").match(/^```bash\n(.*?)^```$/ms)[1];

/** Runs a program until it says a line that a pattern fits, and gives that. */
async function heard(program, args, pattern) {
  const child = spawn(program, args, { cwd: home, stdio: ["ignore", "pipe", "pipe"] });
  const lines = [];
  try {
    return await new Promise((resolve, reject) => {
      for (const stream of [child.stdout, child.stderr])
        createInterface({ input: stream }).on("line", (line) => {
          lines.push(line);
          if (pattern.test(line)) resolve(line);
        });
      child.on("close", (code) => reject(new Error(`${program} ended with ${code}: ${lines.join("\n")}`)));
    });
  } finally {
    child.kill();
  }
}

/** What a program says that pays against a scenario of korvane-acs. */
async function pay(program, scenario, pattern) {
  const path = join(prefix, "share/korvane/acs/scenarios", `${scenario}.json`);
  const acs = spawn(join(prefix, "bin/korvane-acs"), ["--pki", "pki", "--scenario", path], { cwd: home, stdio: ["ignore", "pipe", "inherit"] });
  try {
    const line = await new Promise((resolve) => createInterface({ input: acs.stdout }).once("line", resolve));
    return await heard(program, [JSON.parse(line).url, "pki"], pattern);
  } finally {
    acs.kill();
  }
}

test("the program without a window hears how its challenge ends", async () => {
  const program = built("payment");
  assert.match(await pay(program, "finalAtOnce", /./), /^protocol error 203, transStatus$/);
  assert.match(await heard(program, ["https://127.0.0.1:1", "pki"], /./), /^payment: .*connect/i);
});

test("the program in Qt Quick shows the bank's screen", { skip: !process.env.KORVANE_QT }, async () => {
  const program = built("shop");
  assert.match(await pay(program, "finalAtOnce", /error/), /protocol error 203/);
  await pay(program, "text", /a screen of the bank stands/);
});

test("the program in C pays, built by CMake and by the commands of its page", () => {
  const byCMake = built("c", "payment");
  const folder = join(home, "c");
  const { NODE_TEST_CONTEXT: ours, KORVANE_LIBRARIES: libraries, ...env } = process.env;
  execFileSync("sh", ["-c", commandsOf(join(folder, "README.md"))], { cwd: folder, env: { ...env, PKG_CONFIG_PATH: join(libraries, "pkgconfig") } });
  for (const program of [byCMake, join(folder, "payment")])
    execFileSync(process.execPath, ["--test", join(source, "tests/C/payment/Payment.test.mjs")], { env: { ...env, LD_LIBRARY_PATH: libraries,
      KORVANE_PAYMENT: program, KORVANE_ACS: join(prefix, "bin/korvane-acs"), KORVANE_SCENARIOS: join(prefix, "share/korvane/acs/scenarios") } });
});

test("the program in Java pays, with what is installed and with what java/build makes of it", { skip: !process.env.KORVANE_JDK }, async () => {
  const { KORVANE_JDK: jdk, KORVANE_LIBRARIES: libraries } = process.env;
  const own = join(home, "java");
  const env = { ...process.env, JAVA_HOME: jdk, CXX: compiler, PKG_CONFIG_PATH: join(libraries, "pkgconfig") };
  execFileSync(join(source, "java/build"), [own], { env, stdio: "pipe" });
  const installed = join(prefix, "share/java/korvane.jar");
  assert.ok(readFileSync(join(own, "korvane.jar")).equals(readFileSync(installed)), "the jar is the same");
  const sources = join(prefix, "share/doc/korvane/examples/java/payment");
  const names = readdirSync(sources).map((name) => join(sources, name));
  execFileSync(join(jdk, "bin/javac"), ["-Xlint:all", "-Werror", "-cp", installed, "-d", own, ...names], { stdio: "pipe" });
  for (const folder of [own, join(libraries, "jni")]) {
    const program = join(own, "pay");
    writeFileSync(program, `#!/bin/sh\nexec '${jdk}/bin/java' '-Djava.library.path=${folder}:${libraries}' -cp '${installed}:${own}' payment.Payment "$@"\n`, { mode: 0o755 });
    await pay(program, "oob", /^Completed.*transactionStatus=Y/);
    assert.match(await heard(program, [], /./), /^usage: Payment/);
  }
});

test("the challenge by hand works, and once more in the same folder", () => {
  const script = commandsOf(join(source, "tools/acs/README.md"));
  const env = { ...process.env, PATH: `${join(prefix, "bin")}:${process.env.PATH}` };
  for (const time of ["first", "second"]) {
    const said = execFileSync("bash", ["-c", script], { cwd: home, env, encoding: "utf8", timeout: 60000 });
    assert.equal(JSON.parse(said.trim().split("\n").at(-1)).transStatus, "Y", time);
  }
});
