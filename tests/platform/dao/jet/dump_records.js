// Prints the records of Access databases as the npm package "mdb-reader" reads them: a line of JSON by table for each.
const {readFileSync} = require("fs");

// Dates without their zone, bytes as hexadecimal digits; a Null is left out.
const plain = value => {
    if (value instanceof Date) return value.toISOString().slice(0, 19).replace("T", " ");
    if (value instanceof Uint8Array) return Buffer.from(value).toString("hex").toUpperCase();
    return value;
};

// The package is an ES module: NODE_PATH finds it for require.resolve only.
import(require.resolve("mdb-reader")).then(({default: MDBReader}) => {
    for (const path of process.argv.slice(2)) {
        const reader = new MDBReader(readFileSync(path));
        const tables = {};
        for (const name of reader.getTableNames())
            tables[name] = reader.getTable(name).getData().map(row => Object.fromEntries(
                Object.entries(row).filter(([, value]) => value !== null).map(([key, value]) => [key, plain(value)])));
        console.log(JSON.stringify(tables));
    }
});
