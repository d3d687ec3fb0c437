// The pictures of a cohort with Nextflow:
//
//   nextflow run /usr/share/velmorant/recipes/pictures.nf --studies studies.tsv --pictures pictures
//
// studies: a line for each study, its format, its image and the name of its picture, with tabs between;
// images with their folders from the root on. pictures: the folder. What is there is not made again; a
// study that fails is reported and ignored, and the run ends with 0 nevertheless. The work folder should be on
// the pictures' file system, so that they are moved there and not copied.

// For the shell, whatever a name holds.
def quote(text) {
    "'" + text.replace("'", "'\\''") + "'"
}

params.studies = 'studies.tsv'
params.pictures = 'pictures'

process picture {
    tag "$name"
    storeDir params.pictures
    errorStrategy 'ignore'

    input:
    tuple val(keyword), val(image), val(name)

    output:
    path "${name}.tif"

    script:
    """
    mkdir -p "\$(dirname ${quote(name)})"
    tiffgen-run --check-study --format ${keyword} ${quote(image)} ${quote(name)} 0.0 -s1 >/dev/null
    """
}

workflow {
    studies = Channel.fromPath(params.studies).splitCsv(sep: '\t')
    picture(studies)
}
