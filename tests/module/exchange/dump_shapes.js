// Prints the XY of shapes and the attributes as the npm package "shapefile" reads them, one line a record.
const shapefile = require("shapefile");

// Rings of polygons come grouped and in any order: what counts is which vertices there are.
const pairs = c => typeof c[0] === "number" ? [c.slice(0, 2).join(" ")] : c.flatMap(pairs);

shapefile.open(process.argv[2], undefined, {encoding: "windows-1252"}).then(async source => {
    for (;;) {
        const {done, value} = await source.read();
        if (done) break;
        const vertices = value.geometry ? pairs(value.geometry.coordinates).sort() : [];
        console.log(vertices.join(",") + "|" + Object.values(value.properties).join("|").replace(/[\r\n]/g, " "));
    }
});
