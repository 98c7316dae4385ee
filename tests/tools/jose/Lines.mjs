// The lines that a stream brings, one after the other, whenever they are asked for.

export class Lines {
  #rest = "";
  #lines = [];
  #waiting = [];
  #hasEnded = false;

  constructor(stream) {
    stream.setEncoding("utf8");
    stream.on("data", (text) => {
      const lines = (this.#rest + text).split("\n");
      this.#rest = lines.pop();
      for (const line of lines) this.#give(line);
    });
    stream.on("end", () => {
      if (this.#rest) this.#give(this.#rest);
      this.#hasEnded = true;
      for (const resolve of this.#waiting) resolve(undefined);
    });
  }

  /** The next line without its end; undefined behind the last one. */
  next() {
    if (this.#lines.length > 0) return Promise.resolve(this.#lines.shift());
    return this.#hasEnded ? Promise.resolve() : new Promise((resolve) => this.#waiting.push(resolve));
  }

  #give(line) {
    const resolve = this.#waiting.shift();
    if (resolve) resolve(line);
    else this.#lines.push(line);
  }
}
