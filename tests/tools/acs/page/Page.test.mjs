// The page as a person uses it, in the real engine: what it shows of strangers' messages, and what it steers.

import { strict as assert } from "node:assert";
import { readFileSync } from "node:fs";
import { after, before, test } from "node:test";

import { Acs, folder } from "../Acs.mjs";
import { Sdk } from "../Sdk.mjs";
import { Browser } from "./Browser.mjs";

let acs, browser;
before(async () => {
  acs = await Acs.play("text");
  browser = new Browser(folder);
  await browser.open(acs.url);
  await browser.shows("#status", "Listening");
});
after(() => browser.close());

const authenticated = (headers) => new Sdk(acs).authenticate(undefined, headers);

test("a transaction appears with its messages, its screen as text, and what was at fault", async () => {
  const sdk = await authenticated();
  await sdk.post();
  await browser.shows("#messages .screen", "Confirm your purchase\nWe have sent a code to your phone. Enter it here.\n" +
    "Your code [______]\n[Submit] [Send a new code]\n> Why do I see this?: Your bank makes sure that it is you.");
  await browser.click("#messages li:first-child summary");
  await browser.shows("#messages li:first-child pre", '"DV": "1.1"');
  await sdk.postRaw(sdk.sealed(sdk.creq({ sdkTransID: undefined })));
  await browser.shows("#messages summary .fault", "201 \u00b7 ");
  await browser.shows("#transactions .fault", "sdkTransID");
  await browser.picture("transaction");
});

test("markup in a message stays text, and the bank's page is its text alone", async () => {
  const sdk = await authenticated({ "Korvane-Scenario": "html" });
  await sdk.post({ evil: "<img src=x onerror='document.title = 1'><script>document.title = 2</script>" });
  await browser.shows(`#messages[data-of="${sdk.authentication.acsTransID}"]`, "CRes 000");
  await browser.click("#messages li:nth-child(3) summary");
  await browser.shows("#messages pre", "<img src=x onerror=");
  await browser.shows("#messages .screen", "Confirm your purchase\nCode [______]\n[Submit]");
  const made = await browser.run("['images', 'scripts', 'forms'].map((name) => document[name].length).concat(document.title)");
  assert.deepEqual(made, [0, 1, 0, "korvane-acs"]);
});

test("a scenario and a fault are chosen for the next transaction alone, if they can be played", async () => {
  await browser.choose("#scenario", "oob");
  await browser.choose("#fault", "wrongC");
  await browser.click("#play");
  await browser.shows("#next", "Next: oob with wrongCounter");
  const [chosen, usual] = [await authenticated(), await authenticated()];
  const [first, second] = [await chosen.post(), await usual.post()];
  assert.deepEqual([first.acsUiType, first.acsCounterAtoS, second.acsUiType, second.acsCounterAtoS], ["04", "001", "01", "000"]);
  await browser.shows("#transactions .fault", "fault: wrongCounter");
  await browser.click("#own summary");
  await browser.click("#text");
  await browser.write('{"steps": [], "stops": []}');
  await browser.click("#play");
  await browser.shows("#wrong", "oob with wrongCounter, changed:1: stops: is not known here");
});

test("a CRes that waits is edited and sent, goes unchanged, or nowhere once the app has gone", async () => {
  await browser.click("#hold");
  await browser.shows("#holding", "They wait for you here.");
  const sdk = await authenticated();
  const edited = sdk.post();
  await browser.shows(".held", sdk.authentication.acsTransID);
  await browser.picture("held");
  await browser.click(".held textarea");
  await browser.write('{"messageType": "nonsense"}');
  await browser.click(".held .edited");
  assert.deepEqual(await edited, { messageType: "nonsense" });
  await browser.shows("#messages summary", "nonsense edited");

  const gone = sdk.post();
  await browser.shows(".held", sdk.authentication.acsTransID);
  acs.agent.destroy();
  await assert.rejects(gone);
  await browser.shows("#messages summary", "the app has gone");
  await browser.until("!document.querySelector('.held')");

  ++sdk.counter;
  const unchanged = sdk.post({ challengeDataEntry: "1234" });
  await browser.shows(".held", sdk.authentication.acsTransID);
  await browser.click("#hold");
  assert.equal((await unchanged).transStatus, "Y");
  await browser.until("!document.querySelector('.held')");
});

test("the log is downloaded", async () => {
  await browser.click("#download");
  const { downloaded } = await browser.next();
  const lines = readFileSync(downloaded, "utf8").trimEnd().split("\n").map((line) => JSON.parse(line));
  assert.deepEqual(lines, acs.events);
});

test("a signal ends the tool although a page is open and a CRes waits there", async () => {
  await browser.click("#hold");
  await browser.shows("#holding", "They wait for you here.");
  const sdk = await authenticated();
  const cut = assert.rejects(sdk.post());
  await browser.shows(".held", sdk.authentication.acsTransID);
  assert.equal(await acs.stop(), 0);
  await cut;
  assert.equal(acs.events.at(-1).event, "abandoned");
  await browser.shows("#status", "korvane-acs does not answer; it may have ended.");
});
