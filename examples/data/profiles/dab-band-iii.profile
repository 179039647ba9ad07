<?xml version="1.0" encoding="UTF-8"?>
<profile id="dab-band-iii" showInChannelList="1">
  <label lang="en">DAB (Band III)</label>
  <label lang="de">DAB (Band III)</label>
  <description lang="en">Blocks 5A to 13F, each 1.536 MHz wide. Source: ITU Final Acts RRC-06 (GE06) for 174 to 230 MHz; CEPT Special Arrangement for T-DAB, Wiesbaden 1995, for 230 to 240 MHz.</description>
  <description lang="de">Blöcke 5A bis 13F, jeder 1,536 MHz breit. Quelle: ITU-Schlussakte RRC-06 (GE06) für 174 bis 230 MHz; CEPT-Sondervereinbarung für T-DAB, Wiesbaden 1995, für 230 bis 240 MHz.</description>
  <begin>174 MHz</begin>
  <end>240 MHz</end>
  <channels>
    <!-- Blocks lie 1.712 MHz apart within a television channel, but not from one channel to the next (and not from 13C
         to 13D), and their names hold a letter: each is a range of its own, centre frequency minus and plus 768 kHz.
         The blocks N overlap A and B of their channel; they keep a distance from a television channel below. -->
    <range label="5" type="provider" selectable="1">
      <begin>174 MHz</begin>
      <end>181 MHz</end>
      <color>#6a4fb3</color>
      <range label="5A" type="channel" selectable="1">
        <begin>174.160 MHz</begin>
        <end>175.696 MHz</end>
        <color>#6a4fb3</color>
        <comment>Centre 174.928 MHz</comment>
      </range>
      <range label="5B" type="channel" selectable="1">
        <begin>175.872 MHz</begin>
        <end>177.408 MHz</end>
        <color>#6a4fb3</color>
        <comment>Centre 176.640 MHz</comment>
      </range>
      <range label="5C" type="channel" selectable="1">
        <begin>177.584 MHz</begin>
        <end>179.120 MHz</end>
        <color>#6a4fb3</color>
        <comment>Centre 178.352 MHz</comment>
      </range>
      <range label="5D" type="channel" selectable="1">
        <begin>179.296 MHz</begin>
        <end>180.832 MHz</end>
        <color>#6a4fb3</color>
        <comment>Centre 180.064 MHz</comment>
      </range>
    </range>
    <range label="6" type="provider" selectable="1">
      <begin>181 MHz</begin>
      <end>188 MHz</end>
      <color>#9a7fd1</color>
      <range label="6A" type="channel" selectable="1">
        <begin>181.168 MHz</begin>
        <end>182.704 MHz</end>
        <color>#9a7fd1</color>
        <comment>Centre 181.936 MHz</comment>
      </range>
      <range label="6B" type="channel" selectable="1">
        <begin>182.880 MHz</begin>
        <end>184.416 MHz</end>
        <color>#9a7fd1</color>
        <comment>Centre 183.648 MHz</comment>
      </range>
      <range label="6C" type="channel" selectable="1">
        <begin>184.592 MHz</begin>
        <end>186.128 MHz</end>
        <color>#9a7fd1</color>
        <comment>Centre 185.360 MHz</comment>
      </range>
      <range label="6D" type="channel" selectable="1">
        <begin>186.304 MHz</begin>
        <end>187.840 MHz</end>
        <color>#9a7fd1</color>
        <comment>Centre 187.072 MHz</comment>
      </range>
    </range>
    <range label="7" type="provider" selectable="1">
      <begin>188 MHz</begin>
      <end>195 MHz</end>
      <color>#6a4fb3</color>
      <range label="7A" type="channel" selectable="1">
        <begin>188.160 MHz</begin>
        <end>189.696 MHz</end>
        <color>#6a4fb3</color>
        <comment>Centre 188.928 MHz</comment>
      </range>
      <range label="7B" type="channel" selectable="1">
        <begin>189.872 MHz</begin>
        <end>191.408 MHz</end>
        <color>#6a4fb3</color>
        <comment>Centre 190.640 MHz</comment>
      </range>
      <range label="7C" type="channel" selectable="1">
        <begin>191.584 MHz</begin>
        <end>193.120 MHz</end>
        <color>#6a4fb3</color>
        <comment>Centre 192.352 MHz</comment>
      </range>
      <range label="7D" type="channel" selectable="1">
        <begin>193.296 MHz</begin>
        <end>194.832 MHz</end>
        <color>#6a4fb3</color>
        <comment>Centre 194.064 MHz</comment>
      </range>
    </range>
    <range label="8" type="provider" selectable="1">
      <begin>195 MHz</begin>
      <end>202 MHz</end>
      <color>#9a7fd1</color>
      <range label="8A" type="channel" selectable="1">
        <begin>195.168 MHz</begin>
        <end>196.704 MHz</end>
        <color>#9a7fd1</color>
        <comment>Centre 195.936 MHz</comment>
      </range>
      <range label="8B" type="channel" selectable="1">
        <begin>196.880 MHz</begin>
        <end>198.416 MHz</end>
        <color>#9a7fd1</color>
        <comment>Centre 197.648 MHz</comment>
      </range>
      <range label="8C" type="channel" selectable="1">
        <begin>198.592 MHz</begin>
        <end>200.128 MHz</end>
        <color>#9a7fd1</color>
        <comment>Centre 199.360 MHz</comment>
      </range>
      <range label="8D" type="channel" selectable="1">
        <begin>200.304 MHz</begin>
        <end>201.840 MHz</end>
        <color>#9a7fd1</color>
        <comment>Centre 201.072 MHz</comment>
      </range>
    </range>
    <range label="9" type="provider" selectable="1">
      <begin>202 MHz</begin>
      <end>209 MHz</end>
      <color>#6a4fb3</color>
      <range label="9A" type="channel" selectable="1">
        <begin>202.160 MHz</begin>
        <end>203.696 MHz</end>
        <color>#6a4fb3</color>
        <comment>Centre 202.928 MHz</comment>
      </range>
      <range label="9B" type="channel" selectable="1">
        <begin>203.872 MHz</begin>
        <end>205.408 MHz</end>
        <color>#6a4fb3</color>
        <comment>Centre 204.640 MHz</comment>
      </range>
      <range label="9C" type="channel" selectable="1">
        <begin>205.584 MHz</begin>
        <end>207.120 MHz</end>
        <color>#6a4fb3</color>
        <comment>Centre 206.352 MHz</comment>
      </range>
      <range label="9D" type="channel" selectable="1">
        <begin>207.296 MHz</begin>
        <end>208.832 MHz</end>
        <color>#6a4fb3</color>
        <comment>Centre 208.064 MHz</comment>
      </range>
    </range>
    <range label="10" type="provider" selectable="1">
      <begin>209 MHz</begin>
      <end>216 MHz</end>
      <color>#9a7fd1</color>
      <range label="10A" type="channel" selectable="1">
        <begin>209.168 MHz</begin>
        <end>210.704 MHz</end>
        <color>#9a7fd1</color>
        <comment>Centre 209.936 MHz</comment>
      </range>
      <range label="10N" type="channel" selectable="1">
        <begin>209.328 MHz</begin>
        <end>210.864 MHz</end>
        <color>#b8b8b8</color>
        <comment>Centre 210.096 MHz</comment>
      </range>
      <range label="10B" type="channel" selectable="1">
        <begin>210.880 MHz</begin>
        <end>212.416 MHz</end>
        <color>#9a7fd1</color>
        <comment>Centre 211.648 MHz</comment>
      </range>
      <range label="10C" type="channel" selectable="1">
        <begin>212.592 MHz</begin>
        <end>214.128 MHz</end>
        <color>#9a7fd1</color>
        <comment>Centre 213.360 MHz</comment>
      </range>
      <range label="10D" type="channel" selectable="1">
        <begin>214.304 MHz</begin>
        <end>215.840 MHz</end>
        <color>#9a7fd1</color>
        <comment>Centre 215.072 MHz</comment>
      </range>
    </range>
    <range label="11" type="provider" selectable="1">
      <begin>216 MHz</begin>
      <end>223 MHz</end>
      <color>#6a4fb3</color>
      <range label="11A" type="channel" selectable="1">
        <begin>216.160 MHz</begin>
        <end>217.696 MHz</end>
        <color>#6a4fb3</color>
        <comment>Centre 216.928 MHz</comment>
      </range>
      <range label="11N" type="channel" selectable="1">
        <begin>216.320 MHz</begin>
        <end>217.856 MHz</end>
        <color>#b8b8b8</color>
        <comment>Centre 217.088 MHz</comment>
      </range>
      <range label="11B" type="channel" selectable="1">
        <begin>217.872 MHz</begin>
        <end>219.408 MHz</end>
        <color>#6a4fb3</color>
        <comment>Centre 218.640 MHz</comment>
      </range>
      <range label="11C" type="channel" selectable="1">
        <begin>219.584 MHz</begin>
        <end>221.120 MHz</end>
        <color>#6a4fb3</color>
        <comment>Centre 220.352 MHz</comment>
      </range>
      <range label="11D" type="channel" selectable="1">
        <begin>221.296 MHz</begin>
        <end>222.832 MHz</end>
        <color>#6a4fb3</color>
        <comment>Centre 222.064 MHz</comment>
      </range>
    </range>
    <range label="12" type="provider" selectable="1">
      <begin>223 MHz</begin>
      <end>230 MHz</end>
      <color>#9a7fd1</color>
      <range label="12A" type="channel" selectable="1">
        <begin>223.168 MHz</begin>
        <end>224.704 MHz</end>
        <color>#9a7fd1</color>
        <comment>Centre 223.936 MHz</comment>
      </range>
      <range label="12N" type="channel" selectable="1">
        <begin>223.328 MHz</begin>
        <end>224.864 MHz</end>
        <color>#b8b8b8</color>
        <comment>Centre 224.096 MHz</comment>
      </range>
      <range label="12B" type="channel" selectable="1">
        <begin>224.880 MHz</begin>
        <end>226.416 MHz</end>
        <color>#9a7fd1</color>
        <comment>Centre 225.648 MHz</comment>
      </range>
      <range label="12C" type="channel" selectable="1">
        <begin>226.592 MHz</begin>
        <end>228.128 MHz</end>
        <color>#9a7fd1</color>
        <comment>Centre 227.360 MHz</comment>
      </range>
      <range label="12D" type="channel" selectable="1">
        <begin>228.304 MHz</begin>
        <end>229.840 MHz</end>
        <color>#9a7fd1</color>
        <comment>Centre 229.072 MHz</comment>
      </range>
    </range>
    <range label="13" type="provider" selectable="1">
      <begin>230 MHz</begin>
      <end>240 MHz</end>
      <color>#6a4fb3</color>
      <range label="13A" type="channel" selectable="1">
        <begin>230.016 MHz</begin>
        <end>231.552 MHz</end>
        <color>#6a4fb3</color>
        <comment>Centre 230.784 MHz</comment>
      </range>
      <range label="13B" type="channel" selectable="1">
        <begin>231.728 MHz</begin>
        <end>233.264 MHz</end>
        <color>#6a4fb3</color>
        <comment>Centre 232.496 MHz</comment>
      </range>
      <range label="13C" type="channel" selectable="1">
        <begin>233.440 MHz</begin>
        <end>234.976 MHz</end>
        <color>#6a4fb3</color>
        <comment>Centre 234.208 MHz</comment>
      </range>
      <range label="13D" type="channel" selectable="1">
        <begin>235.008 MHz</begin>
        <end>236.544 MHz</end>
        <color>#6a4fb3</color>
        <comment>Centre 235.776 MHz</comment>
      </range>
      <range label="13E" type="channel" selectable="1">
        <begin>236.720 MHz</begin>
        <end>238.256 MHz</end>
        <color>#6a4fb3</color>
        <comment>Centre 237.488 MHz</comment>
      </range>
      <range label="13F" type="channel" selectable="1">
        <begin>238.432 MHz</begin>
        <end>239.968 MHz</end>
        <color>#6a4fb3</color>
        <comment>Centre 239.200 MHz</comment>
      </range>
    </range>
  </channels>
</profile>
