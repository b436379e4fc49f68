// What the npm package "shapefile" needs to read a .shp: prints seconds of processor time.
const shapefile = require("shapefile");

shapefile.openShp(process.argv[2] + ".shp").then(async source => {
    const start = process.cpuUsage();
    while (!(await source.read()).done) continue;
    const used = process.cpuUsage(start);
    console.log((used.user + used.system) / 1e6);
});
