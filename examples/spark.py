"""The conversion of shards.py in Spark: as a pandas_udf, or by the tool through RDD.pipe.

    spark-submit --py-files examples/shards.py examples/spark.py udf LEXICON OUTPUT
    spark-submit --py-files examples/shards.py examples/spark.py pipe LEXICON OUTPUT

LEXICON has tab-separated fields, the second of which is read, and ends its lines with LF; OUTPUT is
what the tool makes of it. For udf every executor has the package phoneme; for pipe the tool, at the
same path as here.
"""

import argparse
import shlex
import shutil
import sys
from typing import Any

import pandas as pd
from shards import convert_lines

# Status 1 is that of lines that failed, which the output shows. Any other status is to fail the
# task, so that Spark begins it again.
PIPE_SCRIPT = '"$0" convert -q -l "$1" --column "$2" --to codes; [ $? -le 1 ]'


def convert_series(lines: "pd.Series[bytes]", language: str, column: int) -> "pd.Series[bytes]":
    """The lines as the tool writes them, here and there without the LF at the end."""
    converted, _, _ = convert_lines([line + b"\n" for line in lines], language, column)
    return pd.Series([line[:-1] for line in converted], dtype=object)


def pipe_command(tool: str, language: str, column: int) -> str:
    return shlex.join(["/bin/sh", "-c", PIPE_SCRIPT, tool, language, str(column)])


def convert_by_udf(spark: Any, arguments: argparse.Namespace) -> None:
    from pyspark.sql.functions import col, pandas_udf  # type: ignore[import]

    language, column = arguments.language, arguments.column

    def convert(lines: pd.Series) -> pd.Series:
        return convert_series(lines, language, column)

    # As bytes, since a line may be no UTF-8; whole, since comments and empty lines are lines too.
    lines = spark.read.text(arguments.lexicon, lineSep="\n")
    converted = pandas_udf(convert, "binary")(col("value").cast("binary"))
    lines.select(converted.cast("string")).write.text(arguments.output)


def convert_by_pipe(spark: Any, arguments: argparse.Namespace) -> None:
    # Spark starts the command without a PATH.
    tool = shutil.which("phoneme") or sys.exit("the tool phoneme is not on the PATH")
    command = pipe_command(tool, arguments.language, arguments.column)
    lines = spark.sparkContext.textFile(arguments.lexicon)
    lines.pipe(command, checkCode=True).saveAsTextFile(arguments.output)


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("way", choices=["udf", "pipe"])
    parser.add_argument("lexicon")
    parser.add_argument("output")
    parser.add_argument("-l", "--language", choices=["mandarin", "cantonese"], default="mandarin")
    parser.add_argument("--column", type=int, default=2, help="the field that is read, from 1")
    arguments = parser.parse_args()
    try:
        from pyspark.sql import SparkSession  # type: ignore[import]
    except ImportError:
        sys.exit("spark.py needs Spark: start it with spark-submit")

    spark = SparkSession.builder.appName("phoneme").getOrCreate()
    (convert_by_udf if arguments.way == "udf" else convert_by_pipe)(spark, arguments)
    spark.stop()


if __name__ == "__main__":
    main()
